#include "agents/AgentClassification.h"
#include "tests/fuzz/input.h"

#include <string>

using namespace vigilo;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view command = fuzz::text(data, size);
    const auto name = agentName(command);
    fuzz::expect(!name || *name == "Claude Code" || *name == "Codex");
    // What follows a whole command line can only add to what is known of it.
    fuzz::expect(!name || agentName(std::string(command) + " more") == name);
    return 0;
}
