#include "core/AwakeController.h"

#include "platform/Fatal.h"

#include <algorithm>
#include <utility>

namespace vigilo {

namespace {

using namespace std::chrono_literals;
using std::chrono::system_clock;

constexpr std::string_view idleSessionLabel = "Mac can sleep normally";
constexpr std::string_view idleRemainingLabel = "Choose how long to keep it awake";
constexpr std::string_view activeSessionLabel = "Mac will stay awake";
constexpr std::string_view untilStoppedLabel = "Until you stop it";

constexpr std::string_view assertionType = "PreventUserIdleSystemSleep";
constexpr std::uint32_t assertionOn = 255;
constexpr std::string_view assertionName =
    "Keeping developer agents and terminal jobs running while the Mac is idle";

constexpr auto countdownInterval = 1000ms;

std::string remainingText(std::int64_t seconds) {
    constexpr std::int64_t minute = 60;
    constexpr std::int64_t hour = 3600;
    if (seconds >= hour) {
        return std::to_string(seconds / hour) + "h " + std::to_string(seconds % hour / minute) +
               "m remaining";
    }
    return std::to_string(std::max<std::int64_t>(seconds / minute, 1)) + "m remaining";
}

/// The end of a session of so many minutes; stops the process where it cannot be represented.
system_clock::time_point endAfter(system_clock::time_point now, std::int64_t minutes) {
    std::int64_t seconds = 0;
    system_clock::rep ticks = 0;
    system_clock::rep end = 0;
    constexpr system_clock::rep ticksPerSecond =
        system_clock::period::den / system_clock::period::num;
    if (__builtin_mul_overflow(minutes, std::int64_t{60}, &seconds) ||
        __builtin_mul_overflow(seconds, ticksPerSecond, &ticks) ||
        __builtin_add_overflow(now.time_since_epoch().count(), ticks, &end)) {
        fatal("a session length overflows");
    }
    return system_clock::time_point(system_clock::duration(end));
}

} // namespace

void AwakeController::fire(const Callback& callback) {
    if (callback) {
        // A copy, since the callback may replace or clear itself.
        const Callback running = callback;
        running();
    }
}

AwakeController::AwakeController(Environment environment)
    : environment_(std::move(environment)), sessionLabel_(*this, std::string(idleSessionLabel)),
      remainingLabel_(*this, std::string(idleRemainingLabel)) {}

void AwakeController::start(std::optional<std::int64_t> minutes, AwakeMode mode) {
    begin(minutes, mode);
}

/// Whether the power request was granted, or not needed. While an alert says that it was refused
/// somebody may begin another session, which is nothing of this one's.
bool AwakeController::begin(std::optional<std::int64_t> minutes, AwakeMode mode) {
    const std::uint64_t command = ++commands_;
    if (!isActive()) {
        const platform::PowerAssertion assertion =
            environment_.powerAssertions.create(assertionType, assertionOn, assertionName);
        if (assertion.status != 0) {
            environment_.alerts.warn("Couldn’t start protection",
                                     "macOS rejected the power request (error " +
                                         std::to_string(assertion.status) + ").");
            return false;
        }
        assertionID_ = assertion.id;
        isActive_ = true;
    }
    // The handle stays until it is replaced or the session ends; invalidating twice is harmless.
    if (timer_) {
        timer_->invalidate();
    }
    activeMode_ = mode;
    if (minutes) {
        endDate_ = endAfter(environment_.wallClock.now(), *minutes);
        sessionLabel_ = std::string(activeSessionLabel);
        updateRemaining();
        // A callback that has given another command has taken the countdown with it; a second one
        // would tick beside its, and for ever.
        if (commands_ == command) {
            scheduleCountdown();
        }
    } else {
        endDate_.reset();
        sessionLabel_ = std::string(activeSessionLabel);
        remainingLabel_ = std::string(untilStoppedLabel);
    }
    fire(onStateChange);
    return true;
}

void AwakeController::stop() {
    ++commands_;
    endSession(false);
}

void AwakeController::updateRemaining() {
    if (!endDate_) {
        return;
    }
    // Taken from the wall clock rather than counted, so a late tick never lengthens a session.
    const auto remaining = *endDate_ - environment_.wallClock.now();
    const std::int64_t seconds =
        std::chrono::duration_cast<std::chrono::seconds>(remaining).count();
    if (seconds <= 0) {
        endSession(true);
        return;
    }
    remainingLabel_ = remainingText(seconds);
    fire(onStatusRefresh);
}

void AwakeController::endSession(bool expired) {
    const AwakeMode endingMode = activeMode();
    invalidateCountdown();
    endDate_.reset();
    releaseAssertion();
    isActive_ = false;
    sessionLabel_ = std::string(idleSessionLabel);
    remainingLabel_ = std::string(idleRemainingLabel);
    fire(onStateChange);
    if (expired && endingMode == AwakeMode::agentLock) {
        fire(onAgentLockExpired);
    } else {
        fire(onSessionEnded);
    }
}

void AwakeController::scheduleCountdown() {
    timer_ = environment_.runLoop.scheduleRepeating(countdownInterval, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->updateRemaining();
        }
    });
}

void AwakeController::invalidateCountdown() {
    if (timer_) {
        timer_->invalidate();
        timer_.reset();
    }
}

void AwakeController::releaseAssertion() {
    if (isActive()) {
        environment_.powerAssertions.release(assertionID_);
        assertionID_ = 0;
    }
}

void AwakeController::tearDown() {
    ++commands_;
    invalidateCountdown();
    if (agentMonitor_) {
        agentMonitor_->stop();
    }
    endDate_.reset();
    releaseAssertion();
    isActive_ = false;
}

void AwakeController::startAgentMonitoring() {
    if (!agentMonitor_) {
        agentMonitor_ = std::make_shared<AgentMonitor>(
            environment_.runLoop, environment_.readAgentProcesses,
            [weak = weak_from_this()](std::vector<AgentSession> sessions) {
                if (const auto self = weak.lock()) {
                    self->publishAgents(std::move(sessions));
                }
            });
    }
    agentMonitor_->start();
}

void AwakeController::publishAgents(std::vector<AgentSession> sessions) {
    if (sessions == agentSessions()) {
        return;
    }
    agentSessions_ = std::move(sessions);
    fire(onStatusRefresh);
}

} // namespace vigilo
