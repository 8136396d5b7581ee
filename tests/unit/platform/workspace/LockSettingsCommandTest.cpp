#include "platform/linux/workspace/LockSettingsCommand.h"

#include <gtest/gtest.h>

#include <set>

namespace vigilo::platform {
namespace {

using Command = std::vector<std::string>;

Command commandWith(std::string_view desktop, const std::set<std::string, std::less<>>& installed) {
    return lockSettingsCommand(
        desktop, [&](std::string_view program) { return installed.contains(program); });
}

TEST(LockSettingsCommand, isTheDesktopsOwn) {
    EXPECT_EQ(commandWith("GNOME", {"gnome-control-center"}),
              (Command{"gnome-control-center", "screen"}));
    EXPECT_EQ(commandWith("KDE", {"systemsettings", "systemsettings5"}),
              (Command{"systemsettings", "kcm_screenlocker"}));
    EXPECT_EQ(commandWith("MATE", {"mate-screensaver-preferences"}),
              (Command{"mate-screensaver-preferences"}));
}

TEST(LockSettingsCommand, isTheFirstInstalledOfADesktop) {
    EXPECT_EQ(commandWith("XFCE", {"xscreensaver-settings", "light-locker-settings"}),
              (Command{"light-locker-settings"}));
    EXPECT_EQ(commandWith("LXQt", {"lxqt-config"}), (Command{"lxqt-config"}));
}

TEST(LockSettingsCommand, looksAtEveryNameOfADesktop) {
    EXPECT_EQ(commandWith("ubuntu:GNOME", {"gnome-control-center"}),
              (Command{"gnome-control-center", "screen"}));
}

TEST(LockSettingsCommand, isNothingElsewhere) {
    EXPECT_EQ(commandWith("", {"gnome-control-center"}), Command{});
    EXPECT_EQ(commandWith("sway", {"gnome-control-center"}), Command{});
    EXPECT_EQ(commandWith("gnome::", {"gnome-control-center"}), Command{});
    EXPECT_EQ(commandWith("GNOME", {}), Command{});
}

} // namespace
} // namespace vigilo::platform
