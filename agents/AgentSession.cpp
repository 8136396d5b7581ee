#include "agents/AgentSession.h"

namespace vigilo {

namespace {
bool isClaudeCode(const AgentSession& session) {
    return session.name == "Claude Code";
}
} // namespace

std::string_view AgentSession::status() const {
    return isBusy ? "BUSY SIGNAL" : "DETECTED";
}

std::string_view AgentSession::symbol() const {
    return isClaudeCode(*this) ? "sparkles" : "terminal.fill";
}

Tint AgentSession::tint() const {
    if (isClaudeCode(*this)) {
        return NamedColour::systemOrange;
    }
    return SrgbColour{.red = 0.4, .green = 0.72, .blue = 1.0, .opacity = 1.0};
}

} // namespace vigilo
