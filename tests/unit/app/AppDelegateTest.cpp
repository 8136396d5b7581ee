#include "tests/unit/app/AppDelegateFixture.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace vigilo {
namespace {

using namespace std::chrono_literals;
using fakes::DesktopLog;

TEST_F(AppDelegateTest, ownsAControllerBeforeTheLaunchAndShowsNothing) {
    EXPECT_FALSE(controller().isActive());
    EXPECT_EQ(log, DesktopLog{});
}

TEST_F(AppDelegateTest, launchesWithIconWindowMenusStatusItemAndTheSearchForAgentsInThatOrder) {
    agents = {{.pid = 1, .name = "Codex", .project = "webapp", .runtime = "5m"}};
    launch();
    EXPECT_EQ(log, (DesktopLog{"icon", "make Vigilo", "main menu", "status item", "status menu",
                               "show", "activate", "status menu"}))
        << "the last for the agents that were found";
    EXPECT_EQ(controller().agentSessions(), agents);
}

TEST_F(AppDelegateTest, makesTheMainWindowToItsMeasures) {
    launch();
    ASSERT_EQ(windows.made.size(), 1u);
    EXPECT_EQ(windows.made[0].width, 720);
    EXPECT_EQ(windows.made[0].height, 560);
    EXPECT_EQ(windows.made[0].content, "VigiloView");
    EXPECT_EQ(windows.made[0].background,
              (platform::Colour{.red = 0.035, .green = 0.045, .blue = 0.075, .alpha = 1.0}));
    EXPECT_NE(windows.made[0].model, nullptr);
}

TEST_F(AppDelegateTest, closingTheWindowHidesItAndKeepsTheSession) {
    launch();
    controller().start(std::nullopt);
    windows.requestClose();
    EXPECT_FALSE(windows.isVisible);
    EXPECT_TRUE(controller().isActive());
    delegate->showWindow();
    EXPECT_TRUE(windows.isVisible);
    EXPECT_EQ(windows.made.size(), 1u);
}

TEST_F(AppDelegateTest, reopeningShowsTheWindowOnlyWhenNoneIsVisible) {
    launch();
    log.clear();
    EXPECT_TRUE(delegate->applicationShouldHandleReopen(true));
    EXPECT_EQ(log, DesktopLog{});
    EXPECT_TRUE(delegate->applicationShouldHandleReopen(false));
    EXPECT_EQ(log, (DesktopLog{"show", "activate"}));
}

TEST_F(AppDelegateTest, togglesProtectionUntilStoppedAndBack) {
    launch();
    delegate->toggleProtection();
    EXPECT_TRUE(controller().isActive());
    EXPECT_EQ(controller().activeMode(), AwakeMode::visible);
    EXPECT_EQ(controller().remainingLabel(), "Until you stop it");
    delegate->toggleProtection();
    EXPECT_FALSE(controller().isActive());
}

TEST_F(AppDelegateTest, togglingEndsAnAgentLockAsAManualStop) {
    launch();
    delegate->agentLock();
    delegate->toggleProtection();
    runLoop.advance(1s);
    EXPECT_EQ(systemLock.requests, 0);
}

TEST_F(AppDelegateTest, anotherSessionThatEndsLocksNothing) {
    launch();
    controller().start(1, AwakeMode::visible);
    runLoop.advance(61s);
    EXPECT_FALSE(controller().isActive());
    EXPECT_EQ(systemLock.requests, 0);
}

TEST_F(AppDelegateTest, carriesTheActionsOfTheMenus) {
    launch();
    delegate->agentLock();
    EXPECT_EQ(controller().activeMode(), AwakeMode::agentLock);
    delegate->appleLock();
    EXPECT_EQ(controller().activeMode(), AwakeMode::appleLock);
    delegate->openLockSettings();
    EXPECT_EQ(workspace.lockScreenSettingsOpened, 1);
    delegate->quitApp();
    EXPECT_EQ(log.back(), "terminate");
}

TEST_F(AppDelegateTest, doesWhatAnActionsNameSays) {
    launch();
    delegate->performAction("toggleProtection");
    EXPECT_TRUE(controller().isActive());
    delegate->performAction("toggleProtection");
    EXPECT_FALSE(controller().isActive());
    delegate->performAction("agentLock");
    EXPECT_EQ(windows.covered, std::vector<std::string>{"one"});
    delegate->performAction("appleLock");
    EXPECT_EQ(controller().activeMode(), AwakeMode::appleLock);
    delegate->performAction("openLockSettings");
    EXPECT_EQ(workspace.lockScreenSettingsOpened, 1);
    log.clear();
    delegate->performAction("");
    delegate->performAction("showwindow");
    EXPECT_EQ(log, DesktopLog{});
    delegate->performAction("showWindow");
    delegate->performAction("showAbout");
    delegate->performAction("quitApp");
    EXPECT_EQ(log, (DesktopLog{"show", "activate", "about", "activate", "terminate"}));
    delegate->performAction("toggleLaunchAtLogin");
    EXPECT_EQ(loginItem.calls, std::vector<std::string>{"register"});
}

TEST_F(AppDelegateTest, terminatingReleasesTheAssertionAndReactsToNothingMore) {
    launch();
    controller().agentLock(30);
    delegate->applicationWillTerminate();
    EXPECT_TRUE(power.held.empty());
    EXPECT_FALSE(controller().isActive());
    EXPECT_EQ(runLoop.liveTimers(), 0u);
    EXPECT_FALSE(controller().onStateChange || controller().onStatusRefresh ||
                 controller().onAgentLockRequested || controller().onSessionEnded ||
                 controller().onAgentLockExpired);
}

TEST_F(AppDelegateTest, mayTerminateBeforeItHasLaunched) {
    delegate->applicationWillTerminate();
    EXPECT_EQ(log, DesktopLog{});
}

TEST_F(AppDelegateTest, uncoversTheDisplaysLastWhenItIsDestroyed) {
    launch();
    controller().agentLock(30);
    log.clear();
    delegate.reset();
    EXPECT_EQ(log, (DesktopLog{"no status item", "no window", "uncover one"}));
}

TEST_F(AppDelegateTest, callbacksThatComeAfterItsEndDoNothing) {
    launch();
    const auto kept = delegate->controller();
    kept->agentLock(1);
    const auto requestClose = windows.requestClose;
    delegate.reset();
    requestClose();
    runLoop.advance(61s);
    EXPECT_FALSE(kept->isActive());
    EXPECT_EQ(systemLock.requests, 0);
}

using AppDelegateDeathTest = AppDelegateTest;

TEST_F(AppDelegateDeathTest, stopsTheProcessWhenTheWindowIsWantedBeforeTheLaunch) {
    EXPECT_DEATH(delegate->showWindow(), "internal error");
}

TEST_F(AppDelegateDeathTest, stopsTheProcessWhenTheMenuIsWantedBeforeTheLaunch) {
    EXPECT_DEATH(delegate->performAction("toggleLaunchAtLogin"), "internal error");
}

} // namespace
} // namespace vigilo
