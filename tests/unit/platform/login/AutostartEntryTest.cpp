#include "platform/linux/login/AutostartEntry.h"

#include <gtest/gtest.h>

#include <optional>

namespace vigilo::platform {
namespace {

constexpr std::string_view head = "[Desktop Entry]\nType=Application\nName=Vigilo\n";

/// The status of a file where /usr/bin/vigilo is the only program.
LoginItemStatus statusOf(std::string_view file, std::string_view currentDesktop = "GNOME") {
    const std::optional<DesktopEntry> entry = parseDesktopEntry(file);
    EXPECT_TRUE(entry) << file;
    return autostartStatus(*entry, currentDesktop, [](const std::string& program) {
        return program == "/usr/bin/vigilo" || program == "vigilo";
    });
}

/// The status of a good entry with these lines added.
LoginItemStatus statusWith(std::string_view lines, std::string_view currentDesktop = "GNOME") {
    return statusOf(autostartFile("/usr/bin/vigilo") + std::string(lines), currentDesktop);
}

TEST(AutostartEntry, isEnabledAsItIsWritten) {
    EXPECT_EQ(statusWith(""), LoginItemStatus::enabled);
    EXPECT_EQ(statusWith("", ""), LoginItemStatus::enabled);
}

TEST(AutostartEntry, isEnabledWithAProgramOnTheSearchPath) {
    EXPECT_EQ(statusOf(std::string(head) + "Exec=vigilo --self-test\n"), LoginItemStatus::enabled);
}

TEST(AutostartEntry, isTheUsersChoiceWhenTheDesktopsSettingsHaveSwitchedItOff) {
    for (const std::string_view line : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n",
                                        "X-MATE-Autostart-enabled=false\n"}) {
        EXPECT_EQ(statusWith(line), LoginItemStatus::requiresApproval) << line;
    }
    EXPECT_EQ(statusOf("[Desktop Entry]\nHidden=true\n"), LoginItemStatus::requiresApproval);
}

TEST(AutostartEntry, isEnabledWithTheSwitchesOn) {
    EXPECT_EQ(statusWith("Hidden=false\nX-GNOME-Autostart-enabled=true\n"
                         "X-MATE-Autostart-enabled=true\n"),
              LoginItemStatus::enabled);
}

TEST(AutostartEntry, isNotRegisteredWhenItWasSwitchedOffHere) {
    EXPECT_EQ(statusOf(switchedOffFile()), LoginItemStatus::notRegistered);
}

TEST(AutostartEntry, isAChoiceWhereItIsKeptFromTheDesktop) {
    struct Case {
        std::string_view lines;
        std::string_view desktop;
        bool isShown;
    };
    for (const Case& each :
         {Case{"OnlyShowIn=KDE;\n", "GNOME", false}, Case{"OnlyShowIn=KDE;\n", "KDE", true},
          Case{"OnlyShowIn=KDE;\n", "", false},
          Case{"OnlyShowIn=KDE;GNOME\n", "ubuntu:GNOME", true},
          Case{"NotShowIn=GNOME;\n", "ubuntu:GNOME", false},
          Case{"NotShowIn=GNOME;\n", "KDE", true}, Case{"NotShowIn=GNOME;\n", "", true},
          Case{"NotShowIn=GNOME;\nOnlyShowIn=Budgie;\n", "Budgie:GNOME", true},
          Case{"OnlyShowIn=KDE;\nX-XFCE-Autostart-Override=true\n", "XFCE", true},
          Case{"OnlyShowIn=KDE;\nX-XFCE-Autostart-Override=true\n", "GNOME", false}}) {
        EXPECT_EQ(statusWith(each.lines, each.desktop),
                  each.isShown ? LoginItemStatus::enabled : LoginItemStatus::requiresApproval)
            << each.lines << each.desktop;
    }
}

TEST(AutostartEntry, isNotFoundWhenItCannotStartAnything) {
    for (const std::string_view lines :
         {"", "Exec=\n", "Exec=/opt/gone/vigilo\n", "Exec=gone\n", "Exec=\"vigilo\n",
          "Exec=vigilo\nTryExec=/opt/gone/vigilo\n", "Exec=vigilo\nType=Link\n"}) {
        EXPECT_EQ(statusOf(std::string(head) + std::string(lines)), LoginItemStatus::notFound)
            << lines;
    }
}

} // namespace
} // namespace vigilo::platform
