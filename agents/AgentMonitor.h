#pragma once

#include "agents/AgentSession.h"
#include "platform/RunLoop.h"

#include <functional>
#include <memory>
#include <vector>

namespace vigilo {

/// Scans for agents at once and then every three seconds, one scan at a time, in the background.
/// Main thread only; make it with std::make_shared, since scans under way refer to it weakly.
class AgentMonitor : public std::enable_shared_from_this<AgentMonitor> {
public:
    using Scan = std::function<std::vector<AgentSession>()>;
    using Handler = std::function<void(std::vector<AgentSession>)>;

    /// `scan` runs on the background worker, so it must own or share all it needs; `onScanned` is
    /// called with each result on the main thread.
    AgentMonitor(platform::RunLoop& runLoop, Scan scan, Handler onScanned);

    /// Starts, or starts anew: scans at once and replaces the timer.
    void start();

    /// Ends the ticks. A scan under way still delivers its result.
    void stop();

private:
    void scanAgents();
    void finishScan(std::vector<AgentSession> sessions);

    platform::RunLoop& runLoop_;
    Scan scan_;
    Handler onScanned_;
    std::shared_ptr<platform::Timer> agentTimer_;
    bool isScanningAgents_ = false;
};

} // namespace vigilo
