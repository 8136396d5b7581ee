#include "platform/linux/workspace/StartupSettingsCommand.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>

namespace vigilo::platform {
namespace {

Command startupSettingsWith(std::string_view desktop,
                            const std::set<std::string, std::less<>>& installed) {
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
        EXPECT_EQ(startupSettingsWith(desktop, {command.front(), "xdg-open"}), command) << desktop;
    }
}

TEST(StartupSettingsCommand, isTheFirstInstalledOfADesktop) {
    EXPECT_EQ(startupSettingsWith("KDE", {"kcmshell5", "systemsettings5"}),
              (Command{"systemsettings5", "kcm_autostart"}));
    EXPECT_EQ(startupSettingsWith("ubuntu:GNOME", {"gnome-session-properties"}),
              (Command{"gnome-session-properties"}));
}

TEST(StartupSettingsCommand, showsTheFolderWhereTheDesktopHasNoSettings) {
    const Command folder{"xdg-open", "/home/a/.config/autostart"};
    EXPECT_EQ(startupSettingsWith("GNOME", {"xdg-open"}), folder);
    EXPECT_EQ(startupSettingsWith("sway", {"xdg-open", "gnome-tweaks"}), folder);
    EXPECT_EQ(startupSettingsWith("", {"xdg-open"}), folder);
}

TEST(StartupSettingsCommand, isNothingWhereNothingIsInstalled) {
    EXPECT_EQ(startupSettingsWith("GNOME", {}), Command{});
}

} // namespace
} // namespace vigilo::platform
