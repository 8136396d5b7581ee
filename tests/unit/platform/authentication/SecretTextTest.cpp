#include "platform/linux/authentication/SecretText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

namespace vigilo::platform {
namespace {

/// The flags of the memory in which a byte lies: "lo" where it is locked, "dd" where core dumps
/// leave it out; proc(5), smaps.
std::string memoryFlags(const char* byte) {
    std::ifstream maps("/proc/self/smaps");
    bool isHere = false;
    for (std::string line; std::getline(maps, line);) {
        std::uintptr_t start = 0;
        std::uintptr_t end = 0;
        char dash = 0;
        std::istringstream words(line);
        if (words >> std::hex >> start >> dash >> end && dash == '-') {
            const auto address = reinterpret_cast<std::uintptr_t>(byte);
            isHere = start <= address && address < end;
        } else if (isHere && line.starts_with("VmFlags:")) {
            return line + " ";
        }
    }
    return {};
}

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

TEST(SecretText, isNeitherSwappedOutNorDumpedWhateverBecomesOfAnother) {
    auto other = std::make_unique<SecretText>();
    const SecretText text;
    other.reset();
    const std::string flags = memoryFlags(text.view().data());
    EXPECT_NE(flags.find(" lo "), std::string::npos) << flags;
    EXPECT_NE(flags.find(" dd "), std::string::npos) << flags;
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
