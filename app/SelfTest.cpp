#include "app/SelfTest.h"

#include <array>
#include <cstdio>
#include <utility>

namespace vigilo {

std::vector<std::string> failedSelfTests(const CheckedFunctions& functions) {
    std::vector<std::string> failures;
    const auto check = [&](bool passed, std::string name) {
        if (!passed) {
            failures.push_back(std::move(name));
        }
    };

    constexpr std::array<std::pair<std::int64_t, std::int64_t>, 6> durations{
        {{0, 0}, {4, 120}, {8, 240}, {12, 360}, {16, 480}, {17, 510}}};
    for (const auto& [step, minutes] : durations) {
        check(functions.minutesForStep(step) == minutes, "duration step " + std::to_string(step));
    }
    for (std::int64_t step = 0; step <= DurationScale::finalStep; ++step) {
        const auto minutes = static_cast<double>(functions.minutesForStep(step));
        check(functions.stepForMinutes(minutes) == step,
              "duration round trip " + std::to_string(step));
    }
    check(functions.friendlyRuntime("07-09:03:22") == "7d 9h", "day runtime");
    check(functions.friendlyRuntime("01:05:03") == "1h 5m", "hour runtime");
    check(functions.friendlyRuntime("00:42") == "42s", "second runtime");
    check(functions.agentName("/opt/homebrew/bin/codex --model test") == "Codex",
          "Codex detection");
    check(functions.agentName("/opt/homebrew/bin/claude --resume") == "Claude Code",
          "Claude detection");
    check(!functions.agentName("/bin/zsh -l").has_value(), "false agent detection");
    return failures;
}

std::string selfTestVerdict(const std::vector<std::string>& failures) {
    if (failures.empty()) {
        return "SELF_TEST_PASS";
    }
    std::string verdict = "SELF_TEST_FAIL: ";
    for (std::size_t index = 0; index < failures.size(); ++index) {
        verdict += (index == 0 ? "" : ", ") + failures[index];
    }
    return verdict;
}

std::int32_t runSelfTests(const CheckedFunctions& functions) {
    const std::vector<std::string> failures = failedSelfTests(functions);
    std::printf("%s\n", selfTestVerdict(failures).c_str());
    return failures.empty() ? 0 : 1;
}

} // namespace vigilo
