#include "tests/unit/app/AppDelegateFixture.h"

#include <chrono>
#include <string>
#include <vector>

#include <QPointer>

namespace vigilo {
namespace {

using namespace std::chrono_literals;
using fakes::DesktopLog;

using Names = std::vector<std::string>;

TEST_F(AppDelegateTest, coversEveryDisplayAndGivesTheFirstTheKeyboard) {
    launch();
    screens.attach({"one", "two"});
    log.clear();
    controller().agentLock(30);
    EXPECT_EQ(windowLog(), (DesktopLog{"prepare one", "prepare two", "cover one", "cover two",
                                       "key one", "activate"}));
    EXPECT_EQ(windows.covered, (Names{"one", "two"}));
    EXPECT_EQ(windows.covers[1].content, "Privacy/AgentLockView");
    EXPECT_EQ(windows.covers[1].background,
              (platform::Colour{.red = 0.025, .green = 0.032, .blue = 0.06, .alpha = 1}));
    EXPECT_EQ(windows.covers[1].screen.frame.width, 1280);
}

TEST_F(AppDelegateTest, uncoversTheDisplaysInTheirOrder) {
    launch();
    screens.attach({"one", "two", "three"});
    delegate->agentLock();
    log.clear();
    controller().stop();
    EXPECT_EQ(windowLog(), (DesktopLog{"uncover one", "uncover two", "uncover three"}));
}

TEST_F(AppDelegateTest, askedForTheLockAgainCoversAnewBeforeItUncovers) {
    launch();
    delegate->agentLock();
    log.clear();
    delegate->agentLock();
    EXPECT_EQ(windowLog(),
              (DesktopLog{"prepare one", "cover one", "uncover one", "key one", "activate"}));
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

TEST_F(AppDelegateTest, silencesNotificationsForAsLongAsTheLockIsUp) {
    launch();
    controller().start(30, AwakeMode::visible);
    EXPECT_FALSE(notifications.areSilent);
    delegate->agentLock();
    EXPECT_TRUE(notifications.areSilent);
    controller().stop();
    EXPECT_FALSE(notifications.areSilent);
    delegate->agentLock();
    delegate->applicationWillTerminate();
    EXPECT_FALSE(notifications.areSilent);
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

TEST_F(AppDelegateTest, isGuardedUntilTheSystemsLockHasBeenAskedFor) {
    launch();
    std::vector<bool> isGuarded;
    systemLock.onRequest = [&] { isGuarded.push_back(lockGuard.isRaised); };
    controller().agentLock(1);
    runLoop.advance(62s);
    EXPECT_FALSE(lockGuard.isRaised);
    controller().agentLock(30);
    static_cast<AgentLockView*>(windows.covers.back().model)->pressUseAppleLock();
    runLoop.advance(2s);
    EXPECT_FALSE(lockGuard.isRaised);
    EXPECT_EQ(isGuarded, (std::vector{true, true}));
}

TEST_F(AppDelegateTest, staysGuardedWhenItIsCoveredAgainAtOnce) {
    launch();
    controller().agentLock(1);
    runLoop.advance(60s);
    EXPECT_EQ(windows.covered, Names{});
    delegate->agentLock();
    runLoop.advance(2s);
    EXPECT_EQ(windows.covered, Names{"one"});
    EXPECT_TRUE(lockGuard.isRaised);
}

TEST_F(AppDelegateTest, isGuardedOnceEveryDisplayIsCovered) {
    launch();
    screens.attach({"one", "two"});
    std::vector<Names> coveredWhenRaised;
    lockGuard.onRaised = [&] { coveredWhenRaised.push_back(windows.covered); };
    delegate->agentLock();
    EXPECT_EQ(coveredWhenRaised, (std::vector<Names>{{"one", "two"}}));
}

TEST_F(AppDelegateTest, hasNothingToCoverGuardOrSilenceForWithoutADisplay) {
    launch();
    screens.attached.clear();
    log.clear();
    delegate->agentLock();
    EXPECT_EQ(windowLog(), DesktopLog{"activate"});
    EXPECT_FALSE(lockGuard.isRaised);
    EXPECT_FALSE(notifications.areSilent);
}

TEST_F(AppDelegateTest, askedForTheLockAgainWithoutADisplayItStaysUpForTheNext) {
    launch();
    delegate->agentLock();
    screens.attached.clear();
    delegate->agentLock();
    screens.attach({"two"});
    EXPECT_EQ(windows.covered, Names{"two"});
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

TEST_F(AppDelegateTest, aLockScreenWhoseButtonTookItDownGoesOnlyWhenTheButtonHasReturned) {
    launch();
    controller().agentLock(30);
    const QPointer view(static_cast<AgentLockView*>(windows.covers.back().model));
    view->pressUseAppleLock();
    EXPECT_TRUE(view);
    runLoop.runPosted();
    EXPECT_FALSE(view);
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
    EXPECT_EQ(windowLog(), (DesktopLog{"uncover one", "system lock"}));
}

TEST_F(AppDelegateTest, anExpiredAgentLockLeavesTheMachineBehindTheSystemsLock) {
    launch();
    controller().agentLock(1);
    runLoop.advance(61s);
    EXPECT_FALSE(controller().isActive());
    EXPECT_EQ(systemLock.requests, 1);
}

TEST_F(AppDelegateTest, terminatingLeavesTheCoversToTheEndOfTheProcess) {
    launch();
    controller().agentLock(30);
    delegate->applicationWillTerminate();
    EXPECT_EQ(windows.covered, Names{"one"});
    EXPECT_FALSE(screens.onChange);
}

} // namespace
} // namespace vigilo
