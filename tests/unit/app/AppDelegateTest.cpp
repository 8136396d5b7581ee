#include "app/AppDelegate.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakePowerAssertions.h"
#include "tests/fakes/FakeRunLoop.h"
#include "tests/fakes/FakeWallClock.h"
#include "tests/fakes/FakeWindows.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
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
    fakes::FakeScreens screens;
    fakes::FakeAuthenticator authenticator;
    fakes::FakeLockGuard lockGuard;
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
        .screens = screens,
        .authenticator = authenticator,
        .lockGuard = lockGuard,
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

using Names = std::vector<std::string>;

TEST_F(AppDelegateTest, coversEveryDisplayAndGivesTheFirstTheKeyboard) {
    launch();
    screens.attach({"one", "two"});
    log.clear();
    controller().agentLock(30);
    EXPECT_EQ(log, (DesktopLog{"cover one", "cover two", "key one", "activate"}));
    EXPECT_EQ(windows.covered, (Names{"one", "two"}));
    EXPECT_EQ(windows.covers[1].content, "Privacy/AgentLockView");
    EXPECT_EQ(windows.covers[1].background,
              (platform::Colour{.red = 0.025, .green = 0.032, .blue = 0.06, .alpha = 1}));
    EXPECT_EQ(windows.covers[1].screen.frame.width, 1280);
}

TEST_F(AppDelegateTest, askedForTheLockAgainCoversAnewBeforeItUncovers) {
    launch();
    delegate->agentLock();
    log.clear();
    delegate->agentLock();
    EXPECT_EQ(log, (DesktopLog{"cover one", "uncover one", "key one", "activate"}));
    EXPECT_EQ(windows.covered, Names{"one"});
}

TEST_F(AppDelegateTest, followsTheDisplaysWhileTheLockIsUpOnly) {
    launch();
    screens.attach({"one", "two"});
    EXPECT_TRUE(windows.covers.empty());
    delegate->agentLock();
    screens.attach({"two", "three", "four"});
    EXPECT_EQ(windows.covered, (Names{"two", "three", "four"}));
    delegate->toggleProtection();
    screens.attach({"one"});
    EXPECT_EQ(windows.covered, Names{});
}

TEST_F(AppDelegateTest, isGuardedForAsLongAsTheLockIsUp) {
    launch();
    EXPECT_FALSE(lockGuard.isRaised);
    controller().agentLock(30);
    EXPECT_TRUE(lockGuard.isRaised);
    delegate->authenticateAndUnlock();
    authenticator.attempts[0].reply(true);
    runLoop.runPosted();
    EXPECT_FALSE(lockGuard.isRaised);
    delegate->agentLock();
    EXPECT_TRUE(lockGuard.isRaised);
    delegate->applicationWillTerminate();
    EXPECT_FALSE(lockGuard.isRaised);
}

TEST_F(AppDelegateTest, hasNothingToCoverWithoutADisplay) {
    launch();
    screens.attached.clear();
    log.clear();
    delegate->agentLock();
    EXPECT_EQ(log, DesktopLog{"activate"});
}

TEST_F(AppDelegateTest, theOwnerLiftsTheLockAndTheSessionGoesOn) {
    launch();
    controller().agentLock(30);
    const std::string remaining = controller().remainingLabel();
    delegate->authenticateAndUnlock();
    ASSERT_EQ(authenticator.attempts.size(), 1u);
    EXPECT_EQ(authenticator.attempts[0].reason, "Unlock Vigilo");
    EXPECT_EQ(authenticator.attempts[0].cancelTitle, "Stay Locked");
    authenticator.attempts[0].reply(true);
    EXPECT_EQ(windows.covered, Names{"one"}) << "the reply may come on any thread";
    runLoop.runPosted();
    EXPECT_EQ(windows.covered, Names{});
    EXPECT_TRUE(controller().isActive());
    EXPECT_EQ(controller().activeMode(), AwakeMode::agentLock);
    EXPECT_EQ(controller().remainingLabel(), remaining);
}

TEST_F(AppDelegateTest, whoIsNotTheOwnerLeavesItAsItIs) {
    launch();
    controller().agentLock(30);
    delegate->authenticateAndUnlock();
    authenticator.attempts[0].reply(false);
    runLoop.runPosted();
    EXPECT_EQ(windows.covered, Names{"one"});
    delegate->authenticateAndUnlock();
    EXPECT_EQ(authenticator.attempts.size(), 2u);
}

TEST_F(AppDelegateTest, aSuccessThatComesLateFindsNothingToLift) {
    launch();
    controller().agentLock(30);
    delegate->authenticateAndUnlock();
    controller().stop();
    EXPECT_EQ(windows.covered, Names{});
    authenticator.attempts[0].reply(true);
    runLoop.runPosted();
    controller().agentLock(30);
    const auto reply = authenticator.attempts[0].reply;
    delegate.reset();
    reply(true);
    runLoop.runPosted();
}

TEST_F(AppDelegateTest, theLockScreensAppleLockUncoversBeforeTheSystemsLock) {
    launch();
    controller().agentLock(30);
    auto* const view = static_cast<AgentLockView*>(windows.covers.back().model);
    view->pressUseAppleLock();
    EXPECT_EQ(windows.covered, Names{});
    EXPECT_EQ(systemLock.requests, 0);
    EXPECT_TRUE(controller().isActive());
    EXPECT_EQ(controller().activeMode(), AwakeMode::appleLock);
    runLoop.advance(1s);
    EXPECT_EQ(systemLock.requests, 1);
}

TEST_F(AppDelegateTest, theLockScreensUnlockAsksForTheOwner) {
    launch();
    controller().agentLock(30);
    static_cast<AgentLockView*>(windows.covers.back().model)->pressUnlock();
    EXPECT_EQ(authenticator.attempts.size(), 1u);
}

TEST_F(AppDelegateTest, anExpiredAgentLockUncoversBeforeTheSystemsLock) {
    launch();
    controller().agentLock(1);
    log.clear();
    systemLock.onRequest = [&] { log.emplace_back("system lock"); };
    runLoop.advance(61s);
    EXPECT_EQ(log, (DesktopLog{"uncover one", "system lock"}));
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

TEST_F(AppDelegateTest, doesWhatAnActionsNameSays) {
    launch();
    delegate->performAction("toggleProtection");
    EXPECT_TRUE(controller().isActive());
    delegate->performAction("toggleProtection");
    EXPECT_FALSE(controller().isActive());
    delegate->performAction("agentLock");
    EXPECT_EQ(windows.covered, Names{"one"});
    delegate->performAction("appleLock");
    EXPECT_EQ(controller().activeMode(), AwakeMode::appleLock);
    delegate->performAction("openLockSettings");
    EXPECT_EQ(workspace.lockScreenSettingsOpened, 1);
    log.clear();
    delegate->performAction("");
    delegate->performAction("showwindow");
    EXPECT_EQ(log, DesktopLog{});
    delegate->performAction("showWindow");
    delegate->performAction("quitApp");
    EXPECT_EQ(log, (DesktopLog{"show", "activate", "terminate"}));
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

TEST_F(AppDelegateTest, terminatingLeavesTheCoversToTheEndOfTheProcess) {
    launch();
    controller().agentLock(30);
    delegate->applicationWillTerminate();
    EXPECT_EQ(windows.covered, Names{"one"});
    EXPECT_FALSE(screens.onChange);
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
