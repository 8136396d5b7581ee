#include "platform/linux/workspace/StartupSettingsCommand.h"

namespace vigilo::platform {

Command startupSettingsCommand(std::string_view currentDesktop,
                               const std::function<bool(std::string_view)>& isInstalled,
                               const std::string& folder) {
    const std::vector<DesktopCommands> table{
        {"KDE",
         {{"systemsettings", "kcm_autostart"},
          {"systemsettings5", "kcm_autostart"},
          {"kcmshell5", "kcm_autostart"}}},
        {"XFCE", {{"xfce4-session-settings"}}},
        {"MATE", {{"mate-session-properties"}}},
        {"LXQt", {{"lxqt-config-session"}}},
        {"LXDE", {{"lxsession-edit"}}},
        {"X-Cinnamon", {{"cinnamon-settings", "startup"}}},
        {"Budgie", {{"budgie-desktop-settings"}}},
        {"GNOME", {{"gnome-tweaks"}, {"gnome-session-properties"}}},
    };
    Command command = settingsCommand(table, currentDesktop, isInstalled);
    if (command.empty() && isInstalled("xdg-open")) {
        command = {"xdg-open", folder};
    }
    return command;
}

} // namespace vigilo::platform
