#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace vigilo {

/// A tint that the theme resolves by name.
enum class NamedColour { systemOrange };

/// A fixed colour in sRGB; components and opacity in 0 to 1.
struct SrgbColour {
    double red = 0;
    double green = 0;
    double blue = 0;
    double opacity = 1;

    bool operator==(const SrgbColour&) const = default;
};

using Tint = std::variant<NamedColour, SrgbColour>;

/// One coding agent at work in one project, possibly made of several processes.
struct AgentSession {
    std::int64_t pid = 0;          ///< of the group's first process in the table's order
    std::string name;              ///< "Claude Code" or "Codex"
    std::string project;           ///< last component of its folder, or "Local session"
    std::string runtime;           ///< since its start, for display, e.g. "1h 5m"
    bool isBusy = false;           ///< some process of the group uses 1.0 % of a core or more
    std::int64_t processCount = 1; ///< processes in the group

    bool operator==(const AgentSession&) const = default;

    std::int64_t id() const { return pid; }

    /// "BUSY SIGNAL" or "DETECTED".
    std::string_view status() const;

    /// Name of the symbol that stands for the agent.
    std::string_view symbol() const;

    Tint tint() const;
};

} // namespace vigilo
