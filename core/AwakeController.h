#pragma once

#include "agents/AgentMonitor.h"
#include "agents/AgentSession.h"
#include "core/AwakeMode.h"
#include "core/Observable.h"
#include "platform/Alerts.h"
#include "platform/PowerAssertions.h"
#include "platform/RunLoop.h"
#include "platform/SystemLock.h"
#include "platform/WallClock.h"
#include "platform/Workspace.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vigilo {

/// The awake session and what surrounds it: the power assertion, the countdown, the screen mode and
/// the agents seen. Main thread only; make it with std::make_shared, since timers hold it weakly.
///
/// Destroying it lets go of its values only; `tearDown()` is what stops timers and releases the
/// assertion.
class AwakeController : public Observable, public std::enable_shared_from_this<AwakeController> {
public:
    using Callback = std::function<void()>;

    /// The outside world; everything named outlives the controller.
    struct Environment {
        platform::RunLoop& runLoop;
        platform::WallClock& wallClock;
        platform::PowerAssertions& powerAssertions;
        platform::SystemLock& systemLock;
        platform::Workspace& workspace;
        platform::Alerts& alerts;
        AgentMonitor::Scan readAgentProcesses; ///< runs on the background worker
    };

    explicit AwakeController(Environment environment);

    bool isActive() const { return isActive_(); }
    const std::string& sessionLabel() const { return sessionLabel_(); }
    const std::string& remainingLabel() const { return remainingLabel_(); }
    const std::vector<AgentSession>& agentSessions() const { return agentSessions_(); }
    /// Mode of the running session or, when idle, of the last one.
    AwakeMode activeMode() const { return activeMode_(); }

    // Each may be empty. Called synchronously on the main thread after the state has been written;
    // a callback may call back into the controller and may replace or clear callbacks.
    Callback onStateChange;        ///< a session began, changed or ended
    Callback onStatusRefresh;      ///< the remaining time was recomputed, or the agents changed
    Callback onAgentLockRequested; ///< the privacy screens are wanted
    Callback onSessionEnded;       ///< a session ended in any way but the next one
    Callback onAgentLockExpired;   ///< a timed Agent Lock session ran out

    /// Begins a session, or changes the running one without a gap in protection. No minutes: until
    /// stopped. When the power request is refused, an alert is shown and nothing changes. A number
    /// of minutes whose seconds overflow is a programming error.
    void start(std::optional<std::int64_t> minutes, AwakeMode mode = AwakeMode::visible);

    /// Ends the session by hand. While idle it only resets the labels and fires the callbacks.
    void stop();

    /// Starts (or restarts) a session and asks for the privacy screens.
    void agentLock(std::optional<std::int64_t> minutes);

    /// Starts (or restarts) a session and engages the system's lock.
    void appleLock(std::optional<std::int64_t> minutes);

    /// Switches the running session to Agent Lock, keeping its end; starts one if none runs.
    void showAgentLockPreservingSession();

    /// Switches the running session to Apple Lock, keeping its end; starts one if none runs.
    void useAppleLockPreservingSession();

    /// Engages the system's lock and leaves the session alone.
    void lockScreenNow();

    /// Opens the desktop's settings of its screen lock.
    void openLockSettings();

    /// Silent shutdown: stops both timers and releases the assertion; fires nothing.
    void tearDown();

    /// Starts, or starts anew, the search for agents.
    void startAgentMonitoring();

private:
    static void fire(const Callback& callback);
    bool begin(std::optional<std::int64_t> minutes, AwakeMode mode);
    void updateRemaining();
    void endSession(bool expired);
    void activateAppleLockScreen();
    void publishAgents(std::vector<AgentSession> sessions);
    void scheduleCountdown();
    void invalidateCountdown();
    void releaseAssertion();

    Environment environment_;
    Published<bool> isActive_{*this, false};
    Published<std::string> sessionLabel_;
    Published<std::string> remainingLabel_;
    Published<std::vector<AgentSession>> agentSessions_{*this, {}};
    Published<AwakeMode> activeMode_{*this, AwakeMode::visible};
    std::uint32_t assertionID_ = 0;
    std::optional<std::chrono::system_clock::time_point> endDate_;
    std::shared_ptr<platform::Timer> timer_;
    std::uint64_t commands_ = 0; ///< how often a session was started, stopped or torn down
    std::shared_ptr<AgentMonitor> agentMonitor_;
};

} // namespace vigilo
