#include "tests/unit/core/ControllerFixture.h"

#include <functional>
#include <vector>

namespace vigilo {
namespace {

class LockModeActions : public ControllerFixture {};

TEST_F(LockModeActions, agentLockStartsASessionAndAsksForThePrivacyScreens) {
    controller->agentLock(120);
    EXPECT_EQ(controller->activeMode(), AwakeMode::agentLock);
    EXPECT_EQ(fired(), (Names{"onStatusRefresh", "onStateChange", "onAgentLockRequested"}));
    controller->agentLock(std::nullopt);
    EXPECT_EQ(fired(), (Names{"onStateChange", "onAgentLockRequested"}));
    EXPECT_EQ(systemLock.requests, 0);
}

TEST_F(LockModeActions, agentLockShowsNothingWithoutAnAwakeSession) {
    power.refusal = 13;
    controller->agentLock(std::nullopt);
    controller->showAgentLockPreservingSession();
    EXPECT_EQ(fired(), Names{});
}

TEST_F(LockModeActions, whatWasRefusedDoesNothingToASessionThatBeganBehindTheAlert) {
    const std::vector<std::function<void()>> actions{
        [this] { controller->agentLock(30); },
        [this] { controller->appleLock(30); },
        [this] { controller->showAgentLockPreservingSession(); },
        [this] { controller->useAppleLockPreservingSession(); },
    };
    alerts.onShown = [this] {
        power.refusal = 0;
        controller->start(std::nullopt, AwakeMode::visible);
    };
    for (const auto& action : actions) {
        power.refusal = 13;
        action();
        runLoop.advance(1s);
        EXPECT_EQ(controller->activeMode(), AwakeMode::visible);
        EXPECT_EQ(fired(), Names{"onStateChange"});
        controller->stop();
        fired();
    }
    EXPECT_EQ(systemLock.requests, 0);
}

TEST_F(LockModeActions, appleLockStartsASessionAndSleepsTheDisplaysALittleLater) {
    controller->appleLock(30);
    EXPECT_EQ(controller->activeMode(), AwakeMode::appleLock);
    EXPECT_EQ(fired(), (Names{"onStatusRefresh", "onStateChange"}));
    runLoop.advance(340ms);
    EXPECT_EQ(systemLock.requests, 0);
    runLoop.advance(10ms);
    EXPECT_EQ(systemLock.requests, 1);
    EXPECT_TRUE(controller->isActive());
}

TEST_F(LockModeActions, appleLockLocksNothingWithoutAnAwakeSession) {
    power.refusal = 13;
    controller->appleLock(30);
    controller->useAppleLockPreservingSession();
    runLoop.advance(1s);
    EXPECT_EQ(systemLock.requests, 0);
    EXPECT_EQ(fired(), Names{});
}

TEST_F(LockModeActions, showAgentLockKeepsTheEndOfARunningSession) {
    controller->start(60, AwakeMode::visible);
    clock.advance(18min);
    runLoop.advance(1s);
    const std::string before = controller->remainingLabel();
    fired();
    controller->showAgentLockPreservingSession();
    EXPECT_EQ(controller->activeMode(), AwakeMode::agentLock);
    EXPECT_EQ(fired(), (Names{"onStateChange", "onAgentLockRequested"}));
    runLoop.advance(1s);
    EXPECT_EQ(controller->remainingLabel(), before);
    EXPECT_EQ(power.requests.size(), 1u);
}

TEST_F(LockModeActions, showAgentLockStartsAnUntilStoppedSessionWhenIdle) {
    controller->showAgentLockPreservingSession();
    EXPECT_TRUE(controller->isActive());
    EXPECT_EQ(controller->remainingLabel(), "Until you stop it");
    EXPECT_EQ(fired(), (Names{"onStateChange", "onStateChange", "onAgentLockRequested"}));
}

TEST_F(LockModeActions, useAppleLockStartsAnUntilStoppedSessionWhenIdle) {
    controller->useAppleLockPreservingSession();
    EXPECT_EQ(controller->sessionLabel(), "Mac will stay awake");
    EXPECT_EQ(controller->remainingLabel(), "Until you stop it");
    EXPECT_EQ(controller->activeMode(), AwakeMode::appleLock);
    EXPECT_EQ(fired(), (Names{"onStateChange", "onStateChange"}));
    runLoop.advance(350ms);
    EXPECT_EQ(systemLock.requests, 1);
}

TEST_F(LockModeActions, useAppleLockKeepsTheEndOfARunningSession) {
    controller->start(60);
    fired();
    controller->useAppleLockPreservingSession();
    EXPECT_EQ(fired(), (Names{"onStateChange"}));
    runLoop.advance(1s);
    EXPECT_EQ(controller->remainingLabel(), "59m remaining");
}

TEST_F(LockModeActions, lockScreenNowLeavesTheSessionAlone) {
    controller->lockScreenNow();
    runLoop.advance(1s);
    EXPECT_EQ(systemLock.requests, 1);
    EXPECT_FALSE(controller->isActive());
    EXPECT_EQ(controller->sessionLabel(), "Mac can sleep normally");
    EXPECT_EQ(fired(), Names{});
}

TEST_F(LockModeActions, everyRequestLocksOnce) {
    controller->lockScreenNow();
    controller->lockScreenNow();
    runLoop.advance(1s);
    EXPECT_EQ(systemLock.requests, 2);
}

TEST_F(LockModeActions, aLockOnceAskedForComesEvenWhenTheControllerIsGone) {
    controller->lockScreenNow();
    controller.reset();
    runLoop.advance(1s);
    EXPECT_EQ(systemLock.requests, 1);
}

TEST_F(LockModeActions, opensTheSettingsOfTheScreenLock) {
    controller->openLockSettings();
    EXPECT_EQ(workspace.lockScreenSettingsOpened, 1);
}

} // namespace
} // namespace vigilo
