#include "tests/unit/core/SimulatedDay.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <utility>

namespace vigilo {

namespace {

using namespace std::chrono_literals;

constexpr int deepestCallback = 3;
constexpr std::size_t historyLength = 40;

std::string written(std::optional<std::int64_t> minutes) {
    return minutes ? std::to_string(*minutes) + " minutes" : "until stopped";
}

} // namespace

platform::PowerAssertion SimulatedDay::Power::create(std::string_view type, std::uint32_t level,
                                                     std::string_view name) {
    EXPECT_TRUE(held.empty()) << "a second assertion is asked for while one is held";
    clock_.advance(delay);
    return FakePowerAssertions::create(type, level, name);
}

SimulatedDay::SimulatedDay(std::uint64_t seed) : random_(seed) {
    alerts_.onShown = [this] {
        // The alert is modal: the loop turns, and its user may do something else meanwhile.
        if (oneIn(2)) {
            callBack(2);
            ++callsFromCallbacks_;
            runLoop_.advance(std::chrono::seconds(draw(100)));
        }
    };
    makeController();
}

void SimulatedDay::run() {
    while (timeOfDay_ < 24h && !testing::Test::HasFailure()) {
        act();
        pass();
    }
    tearDown();
    EXPECT_TRUE(power_.held.empty());
    EXPECT_EQ(runLoop_.liveTimers(), 0U);
    EXPECT_EQ(power_.released.size() + static_cast<std::size_t>(refusals_), power_.requests.size())
        << "each granted assertion is released once";
}

std::string SimulatedDay::history() const {
    std::ostringstream text;
    for (const std::string& line : history_) {
        text << line << '\n';
    }
    return text.str();
}

void SimulatedDay::makeController() {
    scanned_ = std::make_shared<std::optional<std::vector<AgentSession>>>();
    controller_ = std::make_shared<AwakeController>(AwakeController::Environment{
        .runLoop = runLoop_,
        .wallClock = clock_,
        .powerAssertions = power_,
        .systemLock = systemLock_,
        .workspace = workspace_,
        .alerts = alerts_,
        .readAgentProcesses =
            [this, scanned = scanned_] {
                *scanned = agents_;
                return agents_;
            },
    });
    observation_ = controller_->objectWillChange([this] {
        if (controller_->isActive()) {
            sessionMode_ = controller_->activeMode();
        }
    });
    controller_->onStateChange = [this] {
        noticeStateChange();
        callBack(20);
    };
    controller_->onStatusRefresh = [this] { callBack(60); };
    controller_->onAgentLockRequested = [this] { callBack(20); };
    controller_->onSessionEnded = [this] {
        noticeEnd(false);
        callBack(20);
    };
    controller_->onAgentLockExpired = [this] {
        noticeEnd(true);
        callBack(20);
    };
}

/// What happens inside a callback: now and then a call back into the controller.
void SimulatedDay::callBack(std::uint64_t chances) {
    ++callbacks_;
    checkSession();
    if (depth_ < deepestCallback && oneIn(chances)) {
        ++depth_;
        ++callsFromCallbacks_;
        act();
        --depth_;
    }
}

void SimulatedDay::act() {
    const Minutes minutes = drawMinutes();
    const AwakeMode mode = drawMode();
    switch (draw(16)) {
    case 0:
    case 1:
    case 2:
        note("start " + written(minutes) + " " + std::string(rawValue(mode)));
        begin(minutes, mode, [&] { controller_->start(minutes, mode); });
        break;
    case 3:
        note("agentLock " + written(minutes));
        begin(minutes, AwakeMode::agentLock, [&] { controller_->agentLock(minutes); });
        break;
    case 4:
        note("appleLock " + written(minutes));
        lockAfter([&] {
            begin(minutes, AwakeMode::appleLock, [&] { controller_->appleLock(minutes); });
        });
        break;
    case 5:
    case 6:
        note("showAgentLockPreservingSession");
        beginUnlessActive(AwakeMode::agentLock,
                          [&] { controller_->showAgentLockPreservingSession(); });
        break;
    case 7:
        note("useAppleLockPreservingSession");
        lockAfter([&] {
            beginUnlessActive(AwakeMode::appleLock,
                              [&] { controller_->useAppleLockPreservingSession(); });
        });
        break;
    case 8:
        note("lockScreenNow");
        controller_->lockScreenNow();
        ++locks_;
        break;
    case 9:
        stop();
        break;
    case 10:
        tearDown();
        break;
    case 11:
        if (depth_ == 0 && oneIn(4)) {
            restart();
        }
        break;
    case 12:
        jumpClock();
        break;
    case 13:
    case 14:
        meetAgents();
        break;
    default:
        note("startAgentMonitoring");
        controller_->startAgentMonitoring();
        isMonitoring_ = true;
        break;
    }
    checkSession();
    if (depth_ == 0) {
        checkRest();
    }
}

/// The clock is set, or the machine slept.
void SimulatedDay::jumpClock() {
    constexpr std::array longest{2s, 60s, 3600s, 43200s};
    const auto jump = std::chrono::milliseconds(
        draw(static_cast<std::uint64_t>(longest.at(draw(longest.size())).count()) * 1000));
    const bool isBack = oneIn(2);
    note("the clock jumps " + std::string(isBack ? "back " : "forward ") +
         std::to_string(jump.count()) + " ms");
    clock_.advance(isBack ? -jump : jump);
    hasClockJumped_ = true;
}

void SimulatedDay::meetAgents() {
    agents_.resize(draw(5));
    for (AgentSession& agent : agents_) {
        agent.pid = static_cast<std::int64_t>(draw(4));
        agent.runtime = std::to_string(draw(3)) + "m";
    }
    if (runLoop_.backgroundWorkWaiting() == 0 || oneIn(3)) {
        return; // the scan under way, if any, is a slow one
    }
    note("a scan ends");
    const int callsBefore = callsFromCallbacks_;
    abandonedScans_ = 0;
    runLoop_.runBackgroundWork();
    if (callsFromCallbacks_ == callsBefore) {
        EXPECT_EQ(controller_->agentSessions(), scanned_->value_or(std::vector<AgentSession>{}));
    }
}

/// Some time goes by in which nobody does anything from outside.
void SimulatedDay::pass() {
    constexpr std::array longest{100ms, 3000ms, 20'000ms, 200'000ms};
    const std::chrono::milliseconds time(
        draw(static_cast<std::uint64_t>(longest.at(draw(longest.size())).count())));
    note("pass " + std::to_string(time.count()) + " ms");
    hasClockJumped_ = false;
    timeOfDay_ += time;
    runLoop_.advance(time);
    checkSession();
    checkRest();
    if (time >= 1s && !hasClockJumped_ && promise_.end) {
        checkCountdown();
    }
}

void SimulatedDay::note(const std::string& step) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(timeOfDay_).count();
    history_.push_back(std::to_string(seconds) +
                       " s: " + std::string(static_cast<std::size_t>(depth_) * 2, ' ') + step);
    if (history_.size() > historyLength) {
        history_.pop_front();
    }
}

// The library's distributions differ between implementations; a seed should not.
std::uint64_t SimulatedDay::draw(std::uint64_t below) {
    return random_() % below;
}

SimulatedDay::Minutes SimulatedDay::drawMinutes() {
    constexpr std::array<std::int64_t, 5> offered{30, 60, 120, 240, 480};
    switch (draw(6)) {
    case 0:
        return std::nullopt;
    case 1:
        return offered.at(draw(offered.size()));
    case 2:
        return static_cast<std::int64_t>(draw(1'000'000));
    case 3:
        return static_cast<std::int64_t>(draw(10)) - 8;
    default:
        return static_cast<std::int64_t>(draw(6)) + 1;
    }
}

std::int32_t SimulatedDay::drawStatus() {
    const auto status = static_cast<std::int32_t>(draw(100)) + 1;
    return oneIn(2) ? status : -status;
}

AwakeMode SimulatedDay::drawMode() {
    return allAwakeModes.at(draw(allAwakeModes.size()));
}

} // namespace vigilo
