#include "platform/linux/authentication/SecretText.h"

#include <gtest/gtest.h>

#include <string>

namespace vigilo::platform {
namespace {

TEST(SecretText, growsAndShrinksByCharacters) {
    SecretText text;
    text.append("a");
    text.append("\u00E9");
    text.append("\U0001F511");
    EXPECT_EQ(text.view(), "a\u00E9\U0001F511");
    EXPECT_EQ(text.length(), 3u);
    text.removeLast();
    EXPECT_EQ(text.view(), "a\u00E9");
    text.removeLast();
    text.removeLast();
    text.removeLast();
    EXPECT_TRUE(text.isEmpty());
}

TEST(SecretText, leavesNothingBehindWhenItIsCleared) {
    SecretText text;
    text.append("secret");
    const char* const bytes = text.view().data();
    text.clear();
    EXPECT_EQ(std::string(bytes, 6), std::string(6, '\0'));
    EXPECT_EQ(text.length(), 0u);
}

TEST(SecretText, takesNoMoreThanFits) {
    SecretText text;
    text.append(std::string(1000000, 'x'));
    EXPECT_TRUE(text.isEmpty());
    text.append(std::string(SecretText::capacity, 'x'));
    text.append("y");
    EXPECT_EQ(text.view(), std::string(SecretText::capacity, 'x'));
}

TEST(SecretText, survivesBytesThatAreNoText) {
    SecretText text;
    text.append("\x80\x80");
    text.removeLast();
    text.removeLast();
    EXPECT_TRUE(text.isEmpty());
}

} // namespace
} // namespace vigilo::platform
