#include "helpers/lock/Lockers.h"

namespace vigilo {

std::vector<std::string_view> lockers(DisplayServer server) {
    if (server == DisplayServer::wayland) {
        return {"swaylock", "hyprlock", "gtklock"};
    }
    return {"xsecurelock", "i3lock", "slock"};
}

std::string installedLocker(DisplayServer server,
                            const std::function<std::string(std::string_view)>& find) {
    for (const std::string_view locker : lockers(server)) {
        std::string path = find(locker);
        if (!path.empty()) {
            return path;
        }
    }
    return {};
}

} // namespace vigilo
