#include "app/Menus.h"

#include "tests/fakes/FakeMenus.h"
#include "tests/unit/app/AppDelegateFixture.h"

#include <optional>
#include <string>
#include <vector>

namespace vigilo {
namespace {

using platform::CheckState;
using platform::Menu;
using platform::MenuItem;
using Items = std::vector<MenuItem>;

class Menus : public AppDelegateTest {
protected:
    const MenuItem launchAtLogin{
        .title = "Launch at Login", .action = "toggleLaunchAtLogin", .checkState = CheckState::on};
    const MenuItem separator{.isSeparator = true};

    static MenuItem line(const std::string& title) { return {.title = title, .isEnabled = false}; }

    static MenuItem item(const std::string& title, const std::string& action, char key = '\0') {
        return {.title = title, .action = action, .keyEquivalent = key};
    }

    void detectAgents(std::size_t count) {
        agents.assign(count, {.pid = 1, .name = "Codex", .project = "webapp", .runtime = "5m"});
        launch();
        controller().startAgentMonitoring();
        runLoop.runBackgroundWork();
    }
};

TEST_F(Menus, theStatusMenuOfAMachineThatMaySleepHasElevenLines) {
    EXPECT_EQ(statusMenu(controller(), launchAtLogin).items,
              (Items{line("Mac can sleep normally"), line("No agent processes detected"), separator,
                     item("Open Vigilo\u2026", "showWindow", 'o'),
                     item("Keep Mac Awake", "toggleProtection", 'k'),
                     item("Start Agent Lock", "agentLock", 'l'),
                     item("Start with Apple Lock", "appleLock"), separator, launchAtLogin,
                     separator, item("Quit Vigilo", "quitApp", 'q')}));
}

TEST_F(Menus, theStatusMenuOfAnAwakeMachineHasTwelveTheSecondSayingHowLong) {
    launch();
    controller().start(90);
    EXPECT_EQ(
        statusMenu(controller(), launchAtLogin).items,
        (Items{line("Mac is staying awake"), line(controller().remainingLabel()),
               line("No agent processes detected"), separator,
               item("Open Vigilo\u2026", "showWindow", 'o'),
               item("Stop Keeping Awake", "toggleProtection", 'k'),
               item("Show Agent Lock", "agentLock", 'l'), item("Switch to Apple Lock", "appleLock"),
               separator, launchAtLogin, separator, item("Quit Vigilo", "quitApp", 'q')}));
}

TEST_F(Menus, theStatusMenuCountsAgents) {
    const std::vector<std::string> lines{"No agent processes detected", "1 agent process detected",
                                         "2 agent processes detected",
                                         "3 agent processes detected"};
    for (std::size_t count = 0; count < lines.size(); ++count) {
        detectAgents(count);
        EXPECT_EQ(statusMenu(controller(), launchAtLogin).items[1], line(lines[count]));
        controller().start(std::nullopt);
        EXPECT_EQ(statusMenu(controller(), launchAtLogin).items[2], line(lines[count]));
        controller().stop();
    }
}

TEST_F(Menus, theMainMenuHoldsOneMenuNamedForTheProgram) {
    const auto expected = [&](const char* toggle, const char* agentLock, const char* appleLock) {
        MenuItem program{.title = "Vigilo"};
        program.submenu = {item("About Vigilo", "showAbout"),
                           separator,
                           item("Show Vigilo", "showWindow", 'o'),
                           item(toggle, "toggleProtection", 'k'),
                           separator,
                           item(agentLock, "agentLock", 'l'),
                           item(appleLock, "appleLock"),
                           separator,
                           item("Lock Screen Settings\u2026", "openLockSettings", ','),
                           launchAtLogin,
                           separator,
                           item("Quit Vigilo", "quitApp", 'q')};
        return Menu{.title = "Main Menu", .items = {program}};
    };
    EXPECT_EQ(mainMenu(controller(), launchAtLogin),
              expected("Keep Mac Awake", "Start Agent Lock", "Start with Apple Lock"));
    launch();
    controller().start(std::nullopt);
    EXPECT_EQ(mainMenu(controller(), launchAtLogin),
              expected("Stop Keeping Awake", "Show Agent Lock", "Switch to Apple Lock"));
}

TEST_F(Menus, theDockMenuHasThreeLinesWithoutKeys) {
    EXPECT_EQ(dockMenu(controller()).items,
              (Items{item("Open Vigilo", "showWindow"), item("Keep Mac Awake", "toggleProtection"),
                     item("Start Agent Lock", "agentLock")}));
    launch();
    controller().start(std::nullopt);
    EXPECT_EQ(dockMenu(controller()).items, (Items{item("Open Vigilo", "showWindow"),
                                                   item("Stop Keeping Awake", "toggleProtection"),
                                                   item("Show Agent Lock", "agentLock")}));
}

TEST_F(Menus, theStatusItemShowsAndSaysWhetherItProtects) {
    EXPECT_EQ(statusImage(controller()),
              (platform::StatusImage{.symbol = "bolt.shield",
                                     .accessibilityDescription = "Vigilo protection off",
                                     .pointSize = 15}));
    EXPECT_EQ(statusToolTip(controller()), "Vigilo \u2014 Normal sleep");
    launch();
    controller().start(std::nullopt);
    EXPECT_EQ(statusImage(controller()),
              (platform::StatusImage{.symbol = "bolt.shield.fill",
                                     .accessibilityDescription = "Vigilo protection on",
                                     .pointSize = 15}));
    EXPECT_EQ(statusToolTip(controller()), "Vigilo \u2014 Mac is staying awake");
}

} // namespace
} // namespace vigilo
