#include "core/DurationScale.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

namespace vigilo {
namespace {

TEST(DurationScale, givesThirtyMinutesAStepAndTheUntilStoppedValueAtTheEnd) {
    const std::vector<std::pair<std::int64_t, std::int64_t>> cases{
        {-5, 0},
        {0, 0},
        {1, 30},
        {4, 120},
        {8, 240},
        {12, 360},
        {16, 480},
        {17, 510},
        {100, 510},
        {std::numeric_limits<std::int64_t>::min(), 0},
        {std::numeric_limits<std::int64_t>::max(), 510}};
    for (const auto& [step, minutes] : cases) {
        EXPECT_EQ(DurationScale::minutesForStep(step), minutes) << "step " << step;
    }
}

TEST(DurationScale, roundsMinutesToTheNearestStepHalvesAwayFromZero) {
    const std::vector<std::pair<double, std::int64_t>> cases{
        {0, 0},      {14.9, 0},
        {15, 1},     {29.99, 1},
        {45, 2},     {480, 16},
        {495, 16},   {509.99, 16},
        {510, 17},   {100000, 17},
        {-1000, 0},  {-15, 0},
        {-1e300, 0}, {std::numeric_limits<double>::infinity(), 17}};
    for (const auto& [minutes, step] : cases) {
        EXPECT_EQ(DurationScale::stepForMinutes(minutes), step) << minutes << " minutes";
    }
}

TEST(DurationScale, comesBackToEveryStep) {
    for (std::int64_t step = 0; step <= DurationScale::finalStep; ++step) {
        const auto minutes = static_cast<double>(DurationScale::minutesForStep(step));
        EXPECT_EQ(DurationScale::stepForMinutes(minutes), step);
    }
}

TEST(DurationScaleDeathTest, stopsTheProcessForWhatHasNoStep) {
    EXPECT_DEATH(DurationScale::stepForMinutes(std::numeric_limits<double>::quiet_NaN()),
                 "internal error");
    EXPECT_DEATH(DurationScale::stepForMinutes(-std::numeric_limits<double>::infinity()),
                 "internal error");
}

} // namespace
} // namespace vigilo
