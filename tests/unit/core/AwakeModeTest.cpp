#include "core/AwakeMode.h"

#include <gtest/gtest.h>

#include <vector>

namespace vigilo {
namespace {

TEST(AwakeMode, hasARawValueATitleAndAnIconEach) {
    struct Row {
        AwakeMode mode;
        std::string_view rawValue;
        std::string_view title;
        std::string_view icon;
    };
    const std::vector<Row> rows{
        {AwakeMode::visible, "visible", "Stay Visible", "rectangle.on.rectangle"},
        {AwakeMode::agentLock, "agentLock", "Agent Lock", "eye.slash.fill"},
        {AwakeMode::appleLock, "appleLock", "Apple Lock", "lock.fill"}};
    for (const Row& row : rows) {
        EXPECT_EQ(rawValue(row.mode), row.rawValue);
        EXPECT_EQ(title(row.mode), row.title);
        EXPECT_EQ(icon(row.mode), row.icon);
        EXPECT_EQ(awakeMode(row.rawValue), row.mode);
    }
}

TEST(AwakeMode, isMadeOnlyFromAnExactRawValue) {
    for (const std::string_view text : {"AgentLock", " visible", "visible ", "", "Agent Lock"}) {
        EXPECT_EQ(awakeMode(text), std::nullopt) << text;
    }
}

TEST(AwakeMode, isOfferedInTheOrderOfTheMenu) {
    EXPECT_EQ(std::vector(allAwakeModes.begin(), allAwakeModes.end()),
              (std::vector{AwakeMode::visible, AwakeMode::agentLock, AwakeMode::appleLock}));
}

TEST(AwakeModeDeathTest, stopsTheProcessForAValueOutsideTheEnumeration) {
    EXPECT_DEATH(title(static_cast<AwakeMode>(42)), "internal error");
}

} // namespace
} // namespace vigilo
