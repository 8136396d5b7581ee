#pragma once

#include "agents/AgentClassification.h"
#include "core/DurationScale.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vigilo {

/// The pure logic that the built-in checks call; a test may put broken functions in.
struct CheckedFunctions {
    std::function<std::int64_t(std::int64_t)> minutesForStep = DurationScale::minutesForStep;
    std::function<std::int64_t(double)> stepForMinutes = DurationScale::stepForMinutes;
    std::function<std::string(std::string_view)> friendlyRuntime = vigilo::friendlyRuntime;
    std::function<std::optional<std::string_view>(std::string_view)> agentName = vigilo::agentName;
};

/// The names of the checks that fail, in the order of the checks; empty when all is well.
std::vector<std::string> failedSelfTests(const CheckedFunctions& functions = {});

/// The line that reports them, without its newline.
std::string selfTestVerdict(const std::vector<std::string>& failures);

/// Runs every check, prints the verdict line on standard output and returns the exit status: 0 when
/// all passed, 1 otherwise.
std::int32_t runSelfTests(const CheckedFunctions& functions = {});

} // namespace vigilo
