#include "platform/linux/workspace/LockSettingsCommand.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace vigilo::platform {

namespace {

using Command = std::vector<std::string>;

struct Row {
    std::string_view desktop;
    std::vector<Command> commands; ///< the first installed one serves
};

/// GNOME has moved its panel twice.
Command gnomeCommand(int version) {
    constexpr int screenPanel = 43;
    constexpr int privacyPanel = 45;
    const bool isRecent = version == 0 || version >= privacyPanel;
    return {"gnome-control-center", isRecent                 ? "privacy"
                                    : version >= screenPanel ? "screen"
                                                             : "lock"};
}

const std::vector<Row>& rows() {
    static const std::vector<Row> table{
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
                    const std::function<bool(std::string_view)>& isInstalled, int gnomeVersion) {
    while (!currentDesktop.empty()) {
        const std::size_t length = std::min(currentDesktop.find(':'), currentDesktop.size());
        const std::string_view desktop = currentDesktop.substr(0, length);
        currentDesktop.remove_prefix(std::min(length + 1, currentDesktop.size()));
        if (desktop == "GNOME") {
            Command command = gnomeCommand(gnomeVersion);
            if (isInstalled(command.front())) {
                return command;
            }
        }
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

int gnomeVersion(std::string_view text) {
    const std::size_t digit = text.find_first_of("0123456789");
    int version = 0;
    if (digit != std::string_view::npos) {
        std::from_chars(text.data() + digit, text.data() + text.size(), version);
    }
    return version;
}

} // namespace vigilo::platform
