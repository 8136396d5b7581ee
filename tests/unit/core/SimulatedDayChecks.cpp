// What a SimulatedDay holds the controller to.
#include "tests/unit/core/SimulatedDay.h"

#include <gtest/gtest.h>

#include <sstream>

namespace vigilo {

namespace {

using namespace std::chrono_literals;

std::string remainingText(std::int64_t seconds) {
    std::ostringstream text;
    if (seconds >= 3600) {
        text << seconds / 3600 << "h " << seconds / 60 % 60 << "m remaining";
    } else {
        text << (seconds < 120 ? 1 : seconds / 60) << "m remaining";
    }
    return text.str();
}

} // namespace

void SimulatedDay::noticeStateChange() {
    if (!promise_.isActive || controller_->isActive()) {
        return;
    }
    // Nobody has stopped the session, so its time must be over.
    ASSERT_TRUE(promise_.end.has_value()) << "a session without an end has ended by itself";
    EXPECT_LT(*promise_.end - clock_.now(), 1s) << "a session has ended too early";
    ends_.push_back(sessionMode_ == AwakeMode::agentLock ? End::expiredUnderAgentLock
                                                         : End::expired);
    promise_ = {};
    ++expiries_;
}

void SimulatedDay::noticeEnd(bool underAgentLock) {
    ASSERT_FALSE(ends_.empty()) << "an end is told that has not come";
    EXPECT_EQ(ends_.back() == End::expiredUnderAgentLock, underAgentLock);
    ends_.pop_back();
}

/// What holds at any moment, callbacks included.
void SimulatedDay::checkSession() const {
    EXPECT_EQ(controller_->isActive(), promise_.isActive);
    EXPECT_EQ(power_.held.size(), promise_.isActive ? 1U : 0U);
    const std::string& remaining = controller_->remainingLabel();
    if (promise_.isActive) {
        EXPECT_EQ(controller_->sessionLabel(), "Mac will stay awake");
        EXPECT_EQ(remaining == "Until you stop it", !promise_.end.has_value()) << remaining;
        EXPECT_EQ(remaining.ends_with("m remaining"), promise_.end.has_value()) << remaining;
    } else if (!labelsAreLeftOver_) {
        EXPECT_EQ(controller_->sessionLabel(), "Mac can sleep normally");
        EXPECT_EQ(remaining, "Choose how long to keep it awake");
    }
}

/// What holds between the calls.
void SimulatedDay::checkRest() const {
    EXPECT_TRUE(ends_.empty()) << "an end has not been told";
    const std::size_t countdowns = promise_.end || hasIdleCountdown_ ? 1 : 0;
    EXPECT_EQ(runLoop_.liveTimers(), countdowns + (isMonitoring_ ? 1 : 0));
    EXPECT_LE(runLoop_.backgroundWorkWaiting(), 1 + abandonedScans_);
    EXPECT_EQ(systemLock_.requests + static_cast<int>(runLoop_.delayedTasks()), locks_);
}

/// What holds when the countdown has had the time to tick.
void SimulatedDay::checkCountdown() const {
    const auto left = *promise_.end - clock_.now();
    EXPECT_GT(left.count(), 0) << "a session outlives its end";
    const std::int64_t seconds = std::chrono::duration_cast<std::chrono::seconds>(left).count();
    const std::string& label = controller_->remainingLabel();
    EXPECT_TRUE(label == remainingText(seconds) || label == remainingText(seconds + 1))
        << label << " with " << seconds << " s left";
}

} // namespace vigilo
