#include "platform/linux/workspace/StartupSettingsCommand.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>

namespace vigilo::platform {
namespace {

Command commandWith(std::string_view desktop, const std::set<std::string, std::less<>>& installed) {
    return startupSettingsCommand(
        desktop, [&](std::string_view program) { return installed.contains(program); },
        "/home/a/.config/autostart");
}

TEST(StartupSettingsCommand, isTheDesktopsOwn) {
    const std::vector<std::pair<std::string, Command>> cases{
        {"KDE", {"systemsettings", "kcm_autostart"}},
        {"XFCE", {"xfce4-session-settings"}},
        {"MATE", {"mate-session-properties"}},
        {"LXQt", {"lxqt-config-session"}},
        {"LXDE", {"lxsession-edit"}},
        {"X-Cinnamon", {"cinnamon-settings", "startup"}},
        {"Budgie:GNOME", {"budgie-desktop-settings"}},
        {"GNOME", {"gnome-tweaks"}},
    };
    for (const auto& [desktop, command] : cases) {
        EXPECT_EQ(commandWith(desktop, {command.front(), "xdg-open"}), command) << desktop;
    }
}

TEST(StartupSettingsCommand, isTheFirstInstalledOfADesktop) {
    EXPECT_EQ(commandWith("KDE", {"kcmshell5", "systemsettings5"}),
              (Command{"systemsettings5", "kcm_autostart"}));
    EXPECT_EQ(commandWith("ubuntu:GNOME", {"gnome-session-properties"}),
              (Command{"gnome-session-properties"}));
}

TEST(StartupSettingsCommand, showsTheFolderWhereTheDesktopHasNoSettings) {
    const Command folder{"xdg-open", "/home/a/.config/autostart"};
    EXPECT_EQ(commandWith("GNOME", {"xdg-open"}), folder);
    EXPECT_EQ(commandWith("sway", {"xdg-open", "gnome-tweaks"}), folder);
    EXPECT_EQ(commandWith("", {"xdg-open"}), folder);
}

TEST(StartupSettingsCommand, isNothingWhereNothingIsInstalled) {
    EXPECT_EQ(commandWith("GNOME", {}), Command{});
}

} // namespace
} // namespace vigilo::platform
