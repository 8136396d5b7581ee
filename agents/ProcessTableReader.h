#pragma once

#include "agents/AgentSession.h"
#include "platform/ProcessTable.h"

#include <string>
#include <vector>

namespace vigilo {

/// Finds the agents among the processes and folds those of one agent in one project into a session.
/// Used on one background thread at a time.
class ProcessTableReader {
public:
    /// The table outlives the reader.
    explicit ProcessTableReader(platform::ProcessTable& table) : table_(table) {}

    /// The sessions in display order: busy ones first, then by agent, then in the order in which
    /// they were first seen, in this scan or an earlier one. Never fails; what cannot be read is
    /// missing.
    std::vector<AgentSession> readAgentProcesses();

private:
    platform::ProcessTable& table_;
    std::vector<std::string> knownKeys_; ///< of the last scan, in the order first seen
};

} // namespace vigilo
