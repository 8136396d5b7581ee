#pragma once

#include "core/AwakeController.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakePowerAssertions.h"
#include "tests/fakes/FakeRunLoop.h"
#include "tests/fakes/FakeWallClock.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace vigilo {

/// Twenty-four hours of what users and a failing system may do to a controller, all drawn from one
/// seed. Compares the controller, after each step and inside each callback, with what its callers
/// were promised, and reports each difference as a failure of the running test.
class SimulatedDay {
public:
    explicit SimulatedDay(std::uint64_t seed);

    /// Ends early at the first step that failed.
    void run();

    /// The last steps, one a line, with the time of the day at which they were taken.
    std::string history() const;

    int expiries() const { return expiries_; }
    int refusals() const { return refusals_; }
    int callsFromCallbacks() const { return callsFromCallbacks_; }

private:
    using Time = std::chrono::system_clock::time_point;
    using Minutes = std::optional<std::int64_t>;

    /// Power requests that may be refused, and may be answered late.
    class Power : public fakes::FakePowerAssertions {
    public:
        explicit Power(fakes::FakeWallClock& clock) : clock_(clock) {}
        platform::PowerAssertion create(std::string_view type, std::uint32_t level,
                                        std::string_view name) override;

        std::chrono::milliseconds delay{0};

    private:
        fakes::FakeWallClock& clock_;
    };

    /// What the calls so far promise of the session.
    struct Promise {
        bool isActive = false;
        std::optional<Time> end; ///< only of a timed session
    };

    /// How a session came to its end, until the controller has said so.
    enum class End { byHand, expired, expiredUnderAgentLock };

    void makeController();
    void callBack(std::uint64_t chances);
    void act();
    void begin(Minutes minutes, AwakeMode mode, const std::function<void()>& call);
    void beginUnlessActive(AwakeMode mode, const std::function<void()>& call);
    void lockAfter(const std::function<void()>& call);
    void stop();
    void tearDown();
    void restart();
    void jumpClock();
    void meetAgents();
    void pass();
    void noticeStateChange();
    void noticeEnd(bool underAgentLock);
    void checkSession() const;
    void checkRest() const;
    void checkCountdown() const;
    void note(const std::string& step);

    std::uint64_t draw(std::uint64_t below);
    bool oneIn(std::uint64_t chances) { return draw(chances) == 0; }
    Minutes drawMinutes();
    std::int32_t drawStatus();
    AwakeMode drawMode();

    std::mt19937_64 random_;
    fakes::FakeWallClock clock_;
    fakes::FakeRunLoop runLoop_{clock_};
    Power power_{clock_};
    fakes::FakeSystemLock systemLock_;
    fakes::FakeWorkspace workspace_;
    fakes::FakeAlerts alerts_;
    std::vector<AgentSession> agents_; ///< what a scan finds now
    /// What the last scan for this controller found.
    std::shared_ptr<std::optional<std::vector<AgentSession>>> scanned_;
    std::shared_ptr<AwakeController> controller_;
    Observable::Observation observation_;

    Promise promise_;
    std::vector<End> ends_;
    AwakeMode sessionMode_ = AwakeMode::visible; ///< the last seen while a session ran
    bool labelsAreLeftOver_ = false;             ///< as tearDown() leaves them
    bool hasIdleCountdown_ = false;              ///< a start found its end in the past
    bool hasClockJumped_ = false;                ///< since time began to pass
    bool isMonitoring_ = false;
    int locks_ = 0; ///< of the displays, that were asked for
    int depth_ = 0; ///< of callbacks under way
    int expiries_ = 0;
    int refusals_ = 0;
    int callsFromCallbacks_ = 0;
    int callbacks_ = 0;
    std::size_t abandonedScans_ = 0; ///< of a controller that is gone
    std::chrono::milliseconds timeOfDay_{0};
    std::deque<std::string> history_;
};

} // namespace vigilo
