#include "platform/Menu.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace vigilo::platform {
namespace {

/// One item a character: '-' a separator, '.' a line that informs, any other an action.
std::vector<MenuItem> items(const std::string& actions) {
    std::vector<MenuItem> list;
    for (const char action : actions) {
        MenuItem item{.title = "a title"};
        item.isSeparator = action == '-';
        item.action = action == '-' || action == '.' ? "" : std::string(1, action);
        list.push_back(item);
    }
    return list;
}

TEST(KeptItems, areThoseAtBothEndsThatAreTheSameLine) {
    const std::vector<std::tuple<std::string, std::string, std::size_t, std::size_t>> cases{
        {"", "", 0, 0},
        {"a", "", 0, 0},
        {"ab-c", "ab-c", 4, 0},
        {"..-ab", "...-ab", 2, 3},
        {"...-ab", "..-ab", 2, 3},
        {"abc", "xbz", 0, 0},
        {"aa", "aaa", 2, 0},
        {"abc", "axc", 1, 1},
    };
    for (const auto& [before, after, front, back] : cases) {
        const KeptItems kept = keptItems(items(before), items(after));
        EXPECT_EQ(kept.front, front) << before << " to " << after;
        EXPECT_EQ(kept.back, back) << before << " to " << after;
    }
}

TEST(KeptItems, doNotDependOnTitles) {
    std::vector<MenuItem> renamed = items("ab");
    renamed[0].title = "another";
    EXPECT_EQ(keptItems(items("ab"), renamed).front, 2u);
}

} // namespace
} // namespace vigilo::platform
