#include "ui/DurationMenu.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

namespace vigilo {
namespace {

TEST(DurationMenu, writesAnyNumberOfMinutesInWords) {
    const std::vector<std::pair<double, std::string>> cases{
        {0, "0 min"},
        {-0.0, "0 min"},
        {1, "1 min"},
        {0.5, "0 min"},
        {30, "30 min"},
        {59.9, "59 min"},
        {60, "1 hr"},
        {90, "1 hr 30 min"},
        {480, "8 hr"},
        {509.5, "8 hr 29 min"},
        {510, "Until stopped ∞"},
        {600, "Until stopped ∞"},
        {-5, "-5 min"},
        {45, "45 min"},
        {-9223372036854775808.0, "-9223372036854775808 min"},
        {std::numeric_limits<double>::infinity(), "Until stopped ∞"}};
    for (const auto& [minutes, text] : cases) {
        EXPECT_EQ(selectedDurationLabel(minutes), text) << minutes;
    }
}

TEST(DurationMenu, showsAPresetsOwnLabelWhenClosed) {
    EXPECT_EQ(durationLabel(30), "30 min");
    EXPECT_EQ(durationLabel(120), "2 hours");
    EXPECT_EQ(durationLabel(510), "Until stopped");
    EXPECT_EQ(durationLabel(90), "1 hr 30 min");
}

TEST(DurationMenuDeathTest, stopsTheProcessForWhatIsNoNumberOfMinutes) {
    EXPECT_DEATH(selectedDurationLabel(std::numeric_limits<double>::quiet_NaN()), "internal error");
    EXPECT_DEATH(selectedDurationLabel(-std::numeric_limits<double>::infinity()), "internal error");
    EXPECT_DEATH(selectedDurationLabel(-1e30), "internal error");
}

} // namespace
} // namespace vigilo
