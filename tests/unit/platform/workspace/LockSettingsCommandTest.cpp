#include "platform/linux/workspace/LockSettingsCommand.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>

namespace vigilo::platform {
namespace {

using Command = std::vector<std::string>;

Command lockSettingsWith(std::string_view desktop,
                         const std::set<std::string, std::less<>>& installed,
                         int gnomeVersion = 43) {
    return lockSettingsCommand(
        desktop, [&](std::string_view program) { return installed.contains(program); },
        gnomeVersion);
}

TEST(LockSettingsCommand, isTheDesktopsOwn) {
    EXPECT_EQ(lockSettingsWith("GNOME", {"gnome-control-center"}),
              (Command{"gnome-control-center", "screen"}));
    EXPECT_EQ(lockSettingsWith("KDE", {"systemsettings", "systemsettings5"}),
              (Command{"systemsettings", "kcm_screenlocker"}));
    EXPECT_EQ(lockSettingsWith("MATE", {"mate-screensaver-preferences"}),
              (Command{"mate-screensaver-preferences"}));
    EXPECT_EQ(lockSettingsWith("LXDE", {"xscreensaver-settings"}),
              (Command{"xscreensaver-settings"}));
    EXPECT_EQ(lockSettingsWith("Budgie:GNOME", {"budgie-control-center", "gnome-control-center"}),
              (Command{"budgie-control-center"}));
    EXPECT_EQ(lockSettingsWith("Budgie:GNOME", {"gnome-control-center"}),
              (Command{"gnome-control-center", "screen"}));
}

TEST(LockSettingsCommand, followsGnomesMoves) {
    for (const auto& [version, panel] : {std::pair{3, "lock"},
                                         {42, "lock"},
                                         {43, "screen"},
                                         {44, "screen"},
                                         {45, "privacy"},
                                         {48, "privacy"},
                                         {0, "privacy"}}) {
        EXPECT_EQ(lockSettingsWith("GNOME", {"gnome-control-center"}, version),
                  (Command{"gnome-control-center", panel}))
            << version;
    }
}

TEST(LockSettingsCommand, readsGnomesVersion) {
    EXPECT_EQ(gnomeVersion("gnome-control-center 43.6\n"), 43);
    EXPECT_EQ(gnomeVersion("gnome-control-center 3.38.4"), 3);
    EXPECT_EQ(gnomeVersion("no number"), 0);
    EXPECT_EQ(gnomeVersion("99999999999999"), 0);
    EXPECT_EQ(gnomeVersion(""), 0);
}

TEST(LockSettingsCommand, isTheFirstInstalledOfADesktop) {
    EXPECT_EQ(lockSettingsWith("XFCE", {"xscreensaver-settings", "light-locker-settings"}),
              (Command{"light-locker-settings"}));
    EXPECT_EQ(lockSettingsWith("LXQt", {"lxqt-config"}), (Command{"lxqt-config"}));
}

TEST(LockSettingsCommand, looksAtEveryNameOfADesktop) {
    EXPECT_EQ(lockSettingsWith("ubuntu:GNOME", {"gnome-control-center"}),
              (Command{"gnome-control-center", "screen"}));
}

TEST(LockSettingsCommand, isNothingElsewhere) {
    EXPECT_EQ(lockSettingsWith("", {"gnome-control-center"}), Command{});
    EXPECT_EQ(lockSettingsWith("sway", {"gnome-control-center"}), Command{});
    EXPECT_EQ(lockSettingsWith("gnome::", {"gnome-control-center"}), Command{});
    EXPECT_EQ(lockSettingsWith("GNOME", {}), Command{});
}

} // namespace
} // namespace vigilo::platform
