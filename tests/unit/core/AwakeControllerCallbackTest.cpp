#include "tests/unit/core/ControllerFixture.h"

namespace vigilo {
namespace {

class AwakeControllerCallbacks : public ControllerFixture {
protected:
    Names firedByExpiryIn(AwakeMode mode) {
        controller->start(1, mode);
        clock.advance(1min);
        fired();
        runLoop.advance(1s);
        return fired();
    }
};

TEST_F(AwakeControllerCallbacks, tellOfAnExpiredAgentLockApart) {
    EXPECT_EQ(firedByExpiryIn(AwakeMode::agentLock),
              (Names{"onStateChange", "onAgentLockExpired"}));
    EXPECT_EQ(firedByExpiryIn(AwakeMode::visible), (Names{"onStateChange", "onSessionEnded"}));
    EXPECT_EQ(firedByExpiryIn(AwakeMode::appleLock), (Names{"onStateChange", "onSessionEnded"}));
}

TEST_F(AwakeControllerCallbacks, goByTheModeThatTheSessionWasSwitchedTo) {
    controller->start(1, AwakeMode::agentLock);
    controller->useAppleLockPreservingSession();
    clock.advance(1min);
    fired();
    runLoop.advance(1s);
    EXPECT_EQ(fired(), (Names{"onStateChange", "onSessionEnded"}));
}

TEST_F(AwakeControllerCallbacks, fireOnSessionEndedForAManualStopOfAgentLock) {
    controller->start(30, AwakeMode::agentLock);
    fired();
    controller->stop();
    EXPECT_EQ(fired(), (Names{"onStateChange", "onSessionEnded"}));
}

TEST_F(AwakeControllerCallbacks, findTheStateWritten) {
    std::vector<std::string> labels;
    controller->onStateChange = [&] { labels.push_back(controller->remainingLabel()); };
    controller->start(std::nullopt);
    controller->stop();
    EXPECT_EQ(labels, (Names{"Until you stop it", "Choose how long to keep it awake"}));
}

TEST_F(AwakeControllerCallbacks, findTheModeWrittenThatTheSessionIsSwitchedTo) {
    std::vector<AwakeMode> modes;
    controller->onStateChange = [&] { modes.push_back(controller->activeMode()); };
    controller->start(60);
    controller->useAppleLockPreservingSession();
    controller->showAgentLockPreservingSession();
    EXPECT_EQ(modes, (std::vector{AwakeMode::visible, AwakeMode::appleLock, AwakeMode::agentLock}));
}

TEST_F(AwakeControllerCallbacks, findTheAssertionReleasedAndTheStateIdleAtTheEnd) {
    controller->start(30);
    std::vector<bool> seen;
    controller->onStateChange = [&] {
        seen = {controller->isActive(), power.held.empty(), runLoop.liveTimers() == 0};
    };
    controller->stop();
    EXPECT_EQ(seen, (std::vector{false, true, true}));
}

TEST_F(AwakeControllerCallbacks, goByTheModeOfTheSessionThatEndedWhicheverOneBeginsMeanwhile) {
    controller->onStateChange = [this] {
        if (!controller->isActive()) {
            controller->onStateChange = nullptr;
            controller->start(std::nullopt, AwakeMode::visible);
        }
    };
    controller->start(1, AwakeMode::agentLock);
    clock.advance(1min);
    fired();
    runLoop.advance(1s);
    EXPECT_EQ(fired(), Names{"onAgentLockExpired"});
}

TEST_F(AwakeControllerCallbacks, mayCallBackIntoTheController) {
    controller->onSessionEnded = [&] { controller->start(std::nullopt, AwakeMode::visible); };
    controller->start(30);
    controller->stop();
    EXPECT_TRUE(controller->isActive());
    EXPECT_EQ(power.held.size(), 1u);
}

TEST_F(AwakeControllerCallbacks, mayReplaceTheSessionThatIsStartingAndItsCountdown) {
    controller->onStatusRefresh = [&] {
        controller->onStatusRefresh = nullptr;
        controller->start(60);
    };
    controller->start(30);
    EXPECT_EQ(controller->remainingLabel(), "59m remaining");
    EXPECT_EQ(runLoop.liveTimers(), 1u);
    controller->tearDown();
    EXPECT_EQ(runLoop.liveTimers(), 0u);
}

TEST_F(AwakeControllerCallbacks, mayEndTheSessionThatIsStartingAndItsCountdown) {
    const std::vector<std::function<void()>> ends{
        [&] { controller->stop(); },
        [&] { controller->tearDown(); },
        [&] { controller->start(std::nullopt); },
    };
    for (const auto& end : ends) {
        controller->onStatusRefresh = end;
        controller->start(30);
        EXPECT_EQ(runLoop.liveTimers(), 0u);
    }
}

TEST_F(AwakeControllerCallbacks, mayClearThemselves) {
    int calls = 0;
    controller->onStateChange = [&] {
        ++calls;
        controller->onStateChange = nullptr;
    };
    controller->start(std::nullopt);
    controller->stop();
    EXPECT_EQ(calls, 1);
}

TEST_F(AwakeControllerCallbacks, keepWhatTheyHoldUntilTheyReturn) {
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    bool isHeld = false;
    controller->onStateChange = [this, &watched, &isHeld, held = std::move(held)] {
        // What the closure refers to has to be looked up before it may be gone.
        const std::weak_ptr<int>& kept = watched;
        bool& result = isHeld;
        controller->onStateChange = nullptr;
        result = !kept.expired();
    };
    controller->start(std::nullopt);
    EXPECT_TRUE(isHeld);
    EXPECT_TRUE(watched.expired());
}

TEST_F(AwakeControllerCallbacks, mayAllBeUnset) {
    controller->onStateChange = nullptr;
    controller->onStatusRefresh = nullptr;
    controller->onAgentLockRequested = nullptr;
    controller->onSessionEnded = nullptr;
    controller->onAgentLockExpired = nullptr;
    controller->agentLock(1);
    runLoop.advance(61s);
    controller->stop();
    EXPECT_FALSE(controller->isActive());
}

} // namespace
} // namespace vigilo
