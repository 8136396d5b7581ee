#include "platform/linux/processes/ProcessDirectory.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace vigilo::platform {
namespace {

using namespace std::chrono_literals;

TEST(ProcessStat, countsItsFieldsFromTheLastParenthesis) {
    const auto stat = parseProcessStat("7 (a) R (b) c) S 1 7 7 0 -1 4194304 1 0 0 0 11 22 0 0 20 0 "
                                       "1 0 987654 1000 10 18446744073709551615");
    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->state, 'S');
    EXPECT_EQ(stat->userTicks, 11u);
    EXPECT_EQ(stat->systemTicks, 22u);
    EXPECT_EQ(stat->startTicks, 987654u);
}

TEST(ProcessStat, isNothingWhenItIsCut) {
    EXPECT_FALSE(parseProcessStat(""));
    EXPECT_FALSE(parseProcessStat("7 (a"));
    EXPECT_FALSE(parseProcessStat("7 (a) S 1 2 3"));
}

TEST(ElapsedText, hasTheFormOfTheListing) {
    const std::vector<std::pair<std::chrono::seconds, std::string>> cases{
        {0s, "00:00"},        {42s, "00:42"},
        {5min + 3s, "05:03"}, {1h + 5min + 3s, "01:05:03"},
        {-5s, "00:00"},       {7 * 24h + 9h + 3min + 22s, "7-09:03:22"}};
    for (const auto& [elapsed, text] : cases) {
        EXPECT_EQ(elapsedText(elapsed), text);
    }
}

} // namespace
} // namespace vigilo::platform
