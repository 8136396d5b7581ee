#include "platform/qt/PlatformChoice.h"

namespace vigilo::platform {

std::string platformChoice(const std::set<std::string>& compositorInterfaces, bool hasXServer) {
    // Mutter, GNOME's compositor, has no means for covers, but keeps the unmanaged windows of its X
    // server above everything, its panel included, and lets them have the keyboard. Weston
    // does neither; native full-screen windows hold better there.
    const bool isMutter = compositorInterfaces.contains("gtk_shell1");
    const bool hasLayers = compositorInterfaces.contains("zwlr_layer_shell_v1");
    if (isMutter && !hasLayers && hasXServer) {
        return "xcb;wayland";
    }
    return {};
}

} // namespace vigilo::platform
