#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vigilo {

/// The agent that a command line starts: "Claude Code", "Codex", or none. Words are separated by
/// Unicode white space; quotes mean nothing. The first word must be the agent's name as a path's
/// last component, the second to fourth may also begin with it and a dot (a script), in any case.
/// Any bytes, any thread.
std::optional<std::string_view> agentName(std::string_view command);

/// An elapsed time of the form [[days-]hours:]minutes:seconds as a short text: "7d 9h", "1h 5m",
/// "5m" or "42s". What cannot be read counts as nothing. Any bytes, any thread.
std::string friendlyRuntime(std::string_view elapsed);

} // namespace vigilo
