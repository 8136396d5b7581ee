#include "app/SelfTest.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vigilo {
namespace {

using Names = std::vector<std::string>;

TEST(SelfTest, passesWithTheProgramsOwnFunctions) {
    EXPECT_EQ(failedSelfTests(), Names{});
    EXPECT_EQ(selfTestVerdict({}), "SELF_TEST_PASS");
}

TEST(SelfTest, printsOneLineAndReturnsZero) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(runSelfTests(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "SELF_TEST_PASS\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(SelfTest, runsEveryCheckThoughAllFail) {
    CheckedFunctions functions;
    functions.minutesForStep = [](std::int64_t) { return -1; };
    functions.stepForMinutes = [](double) { return -1; };
    Names asked;
    functions.friendlyRuntime = [&](std::string_view elapsed) {
        asked.emplace_back(elapsed);
        return "nonsense";
    };
    functions.agentName = [&](std::string_view command) {
        asked.emplace_back(command);
        return std::optional<std::string_view>("none");
    };
    Names expected{"duration step 0",  "duration step 4",  "duration step 8",
                   "duration step 12", "duration step 16", "duration step 17"};
    for (int step = 0; step <= 17; ++step) {
        expected.push_back("duration round trip " + std::to_string(step));
    }
    for (const char* const name :
         {"day runtime", "hour runtime", "second runtime", "Codex detection", "Claude detection",
          "false agent detection"}) {
        expected.emplace_back(name);
    }
    EXPECT_EQ(failedSelfTests(functions), expected);
    EXPECT_EQ(asked,
              (Names{"07-09:03:22", "01:05:03", "00:42", "/opt/homebrew/bin/codex --model test",
                     "/opt/homebrew/bin/claude --resume", "/bin/zsh -l"}));
}

TEST(SelfTest, knowsTheMinutesOfTheStepsThatItChecks) {
    for (const std::int64_t broken : {0, 4, 8, 12, 16, 17}) {
        CheckedFunctions functions;
        functions.minutesForStep = [broken](std::int64_t step) {
            return DurationScale::minutesForStep(step) + (step == broken ? 1 : 0);
        };
        EXPECT_EQ(failedSelfTests(functions), Names{"duration step " + std::to_string(broken)});
    }
}

TEST(SelfTest, printsWhatFailedAndReturnsOne) {
    CheckedFunctions functions;
    functions.friendlyRuntime = [](std::string_view elapsed) {
        return elapsed == "00:42" ? "nonsense" : friendlyRuntime(elapsed);
    };
    testing::internal::CaptureStdout();
    EXPECT_EQ(runSelfTests(functions), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "SELF_TEST_FAIL: second runtime\n");
}

TEST(SelfTest, namesFailuresInTheOrderOfTheChecks) {
    CheckedFunctions functions;
    functions.friendlyRuntime = [](std::string_view elapsed) {
        return elapsed == "01:05:03" ? "1h 5m" : "nonsense";
    };
    EXPECT_EQ(failedSelfTests(functions), (Names{"day runtime", "second runtime"}));
    EXPECT_EQ(selfTestVerdict(failedSelfTests(functions)),
              "SELF_TEST_FAIL: day runtime, second runtime");
}

TEST(SelfTest, namesEachBrokenStep) {
    CheckedFunctions functions;
    functions.minutesForStep = [](std::int64_t step) {
        return step == 4 ? 0 : DurationScale::minutesForStep(step);
    };
    functions.stepForMinutes = [](double minutes) {
        return minutes == 60 ? 9 : DurationScale::stepForMinutes(minutes);
    };
    EXPECT_EQ(failedSelfTests(functions),
              (Names{"duration step 4", "duration round trip 2", "duration round trip 4"}));
}

TEST(SelfTest, tellsAMissingAgentAWrongOneAndAFalseOneApart) {
    CheckedFunctions functions;
    functions.agentName = [](std::string_view) { return std::nullopt; };
    EXPECT_EQ(failedSelfTests(functions), (Names{"Codex detection", "Claude detection"}));
    functions.agentName = [](std::string_view) { return std::optional<std::string_view>("Codex"); };
    EXPECT_EQ(failedSelfTests(functions), (Names{"Claude detection", "false agent detection"}));
    functions.agentName = [](std::string_view) { return std::optional<std::string_view>(""); };
    EXPECT_EQ(failedSelfTests(functions),
              (Names{"Codex detection", "Claude detection", "false agent detection"}));
}

} // namespace
} // namespace vigilo
