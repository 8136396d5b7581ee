// The calls that a SimulatedDay makes, with what each promises.
#include "tests/unit/core/SimulatedDay.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vigilo {

using namespace std::chrono_literals;

/// A call that begins or changes a session, unless its power request is refused.
void SimulatedDay::begin(Minutes minutes, AwakeMode mode, const std::function<void()>& call) {
    const bool needsPower = !controller_->isActive();
    power_.refusal = oneIn(5) ? drawStatus() : 0;
    power_.delay = std::chrono::milliseconds(oneIn(4) ? draw(2000) : 0);
    const std::int32_t refusal = needsPower ? power_.refusal : 0;
    if (needsPower && power_.delay > 0ms) {
        hasClockJumped_ = true;
    }
    const AwakeMode modeBefore = controller_->activeMode();
    const int callbacksBefore = callbacks_;
    const int callsBefore = callsFromCallbacks_;
    if (refusal == 0) {
        promise_ = {.isActive = true, .end = {}};
        if (minutes) {
            promise_.end =
                clock_.now() + (needsPower ? power_.delay : 0ms) + std::chrono::minutes(*minutes);
        }
        labelsAreLeftOver_ = false;
        hasIdleCountdown_ = false;
    } else {
        ++refusals_;
    }
    call();
    const bool wasAlone = callsFromCallbacks_ == callsBefore;
    if (refusal != 0) {
        const std::string reason =
            "macOS rejected the power request (error " + std::to_string(refusal) + ").";
        EXPECT_TRUE(std::any_of(alerts_.shown.begin(), alerts_.shown.end(), [&](const auto& alert) {
            return alert.informativeText == reason;
        })) << reason;
    } else if (!promise_.isActive && minutes && *minutes <= 0) {
        // The countdown of a session that ended as it began stays, idle, until the next one.
        hasIdleCountdown_ = wasAlone || runLoop_.liveTimers() > (isMonitoring_ ? 1U : 0U);
    }
    if (wasAlone) {
        EXPECT_EQ(controller_->activeMode(), refusal == 0 ? mode : modeBefore);
        EXPECT_EQ(callbacks_ > callbacksBefore, refusal == 0);
    }
    if (depth_ == 0) {
        alerts_.shown.clear();
    }
}

/// A call that switches the running session, or begins one.
void SimulatedDay::beginUnlessActive(AwakeMode mode, const std::function<void()>& call) {
    if (!controller_->isActive()) {
        begin(std::nullopt, mode, call);
        return;
    }
    const int callsBefore = callsFromCallbacks_;
    call();
    if (callsFromCallbacks_ == callsBefore) {
        EXPECT_EQ(controller_->activeMode(), mode);
    }
}

/// A call that puts the displays to sleep when a session runs then.
void SimulatedDay::lockAfter(const std::function<void()>& call) {
    const int callsBefore = callsFromCallbacks_;
    call();
    const int locks = systemLock_.requests + static_cast<int>(runLoop_.delayedTasks());
    if (callsFromCallbacks_ == callsBefore) {
        locks_ += controller_->isActive() ? 1 : 0;
    } else if (locks == locks_ + 1) {
        locks_ = locks;
    }
}

void SimulatedDay::stop() {
    note("stop");
    const std::size_t endsBefore = ends_.size();
    ends_.push_back(End::byHand);
    promise_ = {};
    labelsAreLeftOver_ = false;
    hasIdleCountdown_ = false;
    controller_->stop();
    EXPECT_EQ(ends_.size(), endsBefore) << "a stop is told exactly once";
}

void SimulatedDay::tearDown() {
    note("tearDown");
    const int callbacksBefore = callbacks_;
    labelsAreLeftOver_ = labelsAreLeftOver_ || promise_.isActive;
    promise_ = {};
    hasIdleCountdown_ = false;
    isMonitoring_ = false;
    controller_->tearDown();
    EXPECT_EQ(callbacks_, callbacksBefore) << "tearing down is silent";
    EXPECT_EQ(runLoop_.liveTimers(), 0U);
    EXPECT_TRUE(power_.held.empty());
}

/// The program ends in its orderly way and is started again.
void SimulatedDay::restart() {
    tearDown();
    note("restart");
    const std::weak_ptr<AwakeController> old = controller_;
    observation_ = {};
    controller_.reset();
    EXPECT_TRUE(old.expired());
    abandonedScans_ = runLoop_.backgroundWorkWaiting();
    sessionMode_ = AwakeMode::visible;
    labelsAreLeftOver_ = false;
    makeController();
}

} // namespace vigilo
