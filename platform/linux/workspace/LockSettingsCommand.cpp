#include "platform/linux/workspace/LockSettingsCommand.h"

#include <algorithm>
#include <cstddef>

namespace vigilo::platform {

namespace {

using Command = std::vector<std::string>;

struct Row {
    std::string_view desktop;
    std::vector<Command> commands; ///< the first installed one serves
};

const std::vector<Row>& rows() {
    static const std::vector<Row> table{
        {"GNOME", {{"gnome-control-center", "screen"}}},
        {"KDE",
         {{"systemsettings", "kcm_screenlocker"},
          {"systemsettings5", "kcm_screenlocker"},
          {"kcmshell5", "kcm_screenlocker"}}},
        {"XFCE",
         {{"xfce4-screensaver-preferences"},
          {"light-locker-settings"},
          {"xfce4-power-manager-settings"},
          {"xscreensaver-settings"}}},
        {"MATE", {{"mate-screensaver-preferences"}}},
        {"X-Cinnamon", {{"cinnamon-settings", "screensaver"}}},
        {"LXQt", {{"xscreensaver-settings"}, {"lxqt-config"}}},
    };
    return table;
}

} // namespace

std::vector<std::string>
lockSettingsCommand(std::string_view currentDesktop,
                    const std::function<bool(std::string_view)>& isInstalled) {
    while (!currentDesktop.empty()) {
        const std::size_t length = std::min(currentDesktop.find(':'), currentDesktop.size());
        const std::string_view desktop = currentDesktop.substr(0, length);
        currentDesktop.remove_prefix(std::min(length + 1, currentDesktop.size()));
        for (const Row& row : rows()) {
            if (row.desktop != desktop) {
                continue;
            }
            for (const Command& command : row.commands) {
                if (isInstalled(command.front())) {
                    return command;
                }
            }
        }
    }
    return {};
}

} // namespace vigilo::platform
