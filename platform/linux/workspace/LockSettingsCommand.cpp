#include "platform/linux/workspace/LockSettingsCommand.h"

#include <charconv>
#include <cstddef>

namespace vigilo::platform {

namespace {

/// GNOME has moved its panel twice.
Command gnomeCommand(int version) {
    constexpr int screenPanel = 43;
    constexpr int privacyPanel = 45;
    const bool isRecent = version == 0 || version >= privacyPanel;
    return {"gnome-control-center", isRecent                 ? "privacy"
                                    : version >= screenPanel ? "screen"
                                                             : "lock"};
}

} // namespace

Command lockSettingsCommand(std::string_view currentDesktop,
                            const std::function<bool(std::string_view)>& isInstalled,
                            int gnomeVersion) {
    const std::vector<DesktopCommands> table{
        {"Budgie", {{"budgie-control-center"}}},
        {"GNOME", {gnomeCommand(gnomeVersion)}},
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
        {"LXDE", {{"xscreensaver-settings"}}},
    };
    return settingsCommand(table, currentDesktop, isInstalled);
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
