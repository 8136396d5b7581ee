#include "helpers/lock/Lockers.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace vigilo {
namespace {

std::string lockerAmong(DisplayServer server, const std::set<std::string_view>& installed) {
    return installedLocker(server, [&](std::string_view program) {
        return installed.contains(program) ? "/usr/bin/" + std::string(program) : std::string();
    });
}

TEST(Lockers, fitTheDisplayServer) {
    EXPECT_EQ(lockerAmong(DisplayServer::wayland, {"i3lock", "swaylock"}), "/usr/bin/swaylock");
    EXPECT_EQ(lockerAmong(DisplayServer::x11, {"i3lock", "swaylock"}), "/usr/bin/i3lock");
}

TEST(Lockers, areTakenInOrder) {
    EXPECT_EQ(lockerAmong(DisplayServer::wayland, {"gtklock", "hyprlock"}), "/usr/bin/hyprlock");
    EXPECT_EQ(lockerAmong(DisplayServer::x11, {"slock", "i3lock", "xsecurelock"}),
              "/usr/bin/xsecurelock");
}

TEST(Lockers, areNoneWhereNoneIsInstalled) {
    EXPECT_EQ(lockerAmong(DisplayServer::wayland, {"i3lock"}), "");
    EXPECT_EQ(lockerAmong(DisplayServer::x11, {}), "");
}

} // namespace
} // namespace vigilo
