#include "app/AppDelegate.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakePowerAssertions.h"
#include "tests/fakes/FakeRunLoop.h"
#include "tests/fakes/FakeWallClock.h"
#include "tests/fakes/FakeWindows.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <vector>

namespace vigilo {
namespace {

using namespace std::chrono_literals;
using fakes::DesktopLog;

class AppDelegateTest : public testing::Test {
protected:
    void launch() {
        delegate->applicationDidFinishLaunching();
        runLoop.runBackgroundWork();
    }

    AwakeController& controller() { return *delegate->controller(); }

    DesktopLog log;
    fakes::FakeWallClock clock;
    fakes::FakeRunLoop runLoop{clock};
    fakes::FakePowerAssertions power;
    fakes::FakeSystemLock systemLock;
    fakes::FakeWorkspace workspace;
    fakes::FakeAlerts alerts;
    fakes::FakeApplication application{log};
    fakes::FakeWindows windows{log};
    std::vector<AgentSession> agents;
    std::shared_ptr<AppDelegate> delegate = std::make_shared<AppDelegate>(AppDelegate::Environment{
        .controller = {.runLoop = runLoop,
                       .wallClock = clock,
                       .powerAssertions = power,
                       .systemLock = systemLock,
                       .workspace = workspace,
                       .alerts = alerts,
                       .readAgentProcesses = [this] { return agents; }},
        .application = application,
        .windows = windows,
    });
};

TEST_F(AppDelegateTest, ownsAControllerBeforeTheLaunchAndShowsNothing) {
    EXPECT_FALSE(controller().isActive());
    EXPECT_EQ(log, DesktopLog{});
}

TEST_F(AppDelegateTest, launchesWithTheIconTheWindowAndTheSearchForAgentsInThatOrder) {
    agents = {{.pid = 1, .name = "Codex", .project = "webapp", .runtime = "5m"}};
    launch();
    EXPECT_EQ(log, (DesktopLog{"icon", "make Vigilo", "show", "activate"}));
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

TEST_F(AppDelegateTest, anExpiredAgentLockLeavesTheMachineBehindTheSystemsLock) {
    launch();
    controller().agentLock(1);
    runLoop.advance(61s);
    EXPECT_FALSE(controller().isActive());
    EXPECT_EQ(systemLock.requests, 1);
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

} // namespace
} // namespace vigilo
