#include "app/SelfTest.h"

#include <gtest/gtest.h>

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
