#include "platform/qt/PlatformChoice.h"

#include <gtest/gtest.h>

namespace vigilo::platform {
namespace {

TEST(PlatformChoice, takesTheXServerOfAMutterWithoutLayers) {
    EXPECT_EQ(platformChoice({"wl_compositor", "gtk_shell1", "xdg_wm_base"}, true), "xcb;wayland");
}

TEST(PlatformChoice, leavesAMutterWithoutAnXServerToTheToolkit) {
    EXPECT_EQ(platformChoice({"wl_compositor", "gtk_shell1", "xdg_wm_base"}, false), "");
}

TEST(PlatformChoice, prefersLayersToAnXServer) {
    EXPECT_EQ(platformChoice({"gtk_shell1", "zwlr_layer_shell_v1"}, true), "");
}

TEST(PlatformChoice, leavesOtherCompositorsToTheToolkit) {
    EXPECT_EQ(platformChoice({"wl_compositor", "zwlr_layer_shell_v1"}, true), "");
    EXPECT_EQ(platformChoice({"wl_compositor", "xdg_wm_base"}, true), "");
    EXPECT_EQ(platformChoice({}, true), "");
}

} // namespace
} // namespace vigilo::platform
