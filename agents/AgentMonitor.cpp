#include "agents/AgentMonitor.h"

#include <chrono>
#include <utility>

namespace vigilo {

namespace {
using namespace std::chrono_literals;
constexpr auto scanInterval = 3000ms;
} // namespace

AgentMonitor::AgentMonitor(platform::RunLoop& runLoop, Scan scan, Handler onScanned)
    : runLoop_(runLoop), scan_(std::move(scan)), onScanned_(std::move(onScanned)) {}

void AgentMonitor::start() {
    scanAgents();
    stop();
    agentTimer_ = runLoop_.scheduleRepeating(scanInterval, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->scanAgents();
        }
    });
}

void AgentMonitor::stop() {
    if (agentTimer_) {
        agentTimer_->invalidate();
        agentTimer_.reset();
    }
}

void AgentMonitor::scanAgents() {
    // A tick during a slow scan is dropped rather than queued, so scans never pile up.
    if (isScanningAgents_) {
        return;
    }
    isScanningAgents_ = true;
    runLoop_.runInBackground([weak = weak_from_this(), &runLoop = runLoop_, scan = scan_] {
        auto sessions = scan();
        runLoop.post([weak, sessions = std::move(sessions)]() mutable {
            if (const auto self = weak.lock()) {
                self->finishScan(std::move(sessions));
            }
        });
    });
}

void AgentMonitor::finishScan(std::vector<AgentSession> sessions) {
    onScanned_(std::move(sessions));
    isScanningAgents_ = false;
}

} // namespace vigilo
