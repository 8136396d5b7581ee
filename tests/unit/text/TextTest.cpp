#include "text/DisplayText.h"
#include "text/Numbers.h"
#include "text/Parts.h"
#include "text/Path.h"
#include "text/Unicode.h"
#include "text/Words.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vigilo {
namespace {

std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> found;
    Words words(text);
    while (const auto word = words.next()) {
        found.emplace_back(*word);
    }
    return found;
}

using List = std::vector<std::string>;

TEST(Words, areSeparatedByUnicodeWhiteSpace) {
    EXPECT_EQ(wordsOf(""), List{});
    EXPECT_EQ(wordsOf(" \t\n\v\f\r "), List{});
    EXPECT_EQ(wordsOf("  a  b\tc\n"), (List{"a", "b", "c"}));
    EXPECT_EQ(wordsOf("a\u00A0b\u0085c\u2003d\u3000e\u2028f\u202Fg\u205Fh\u1680i"),
              (List{"a", "b", "c", "d", "e", "f", "g", "h", "i"}));
    EXPECT_EQ(wordsOf("a\u200Bb"), (List{"a\u200Bb"}));
}

TEST(Words, keepBytesThatAreNoText) {
    EXPECT_EQ(wordsOf("a\xFF\xC2 b\xE2\x80"), (List{"a\xFF\xC2", "b\xE2\x80"}));
}

TEST(Words, knowWhatFollowsTheOneSeparator) {
    Words words("  1  two   rest of it");
    words.next();
    words.next();
    EXPECT_EQ(words.rest(), "  rest of it");
}

TEST(Numbers, areWholeDecimalIntegers) {
    EXPECT_EQ(decimalInteger("42"), 42);
    EXPECT_EQ(decimalInteger("+7"), 7);
    EXPECT_EQ(decimalInteger("-7"), -7);
    EXPECT_EQ(decimalInteger("007"), 7);
    for (const std::string_view text :
         {"", "+", "-", "+-1", "--1", " 1", "1 ", "1.0", "0x1", "a", "99999999999999999999"}) {
        EXPECT_EQ(decimalInteger(text), std::nullopt) << text;
    }
}

TEST(Numbers, areFloatingPointWithAPointWhateverTheLocale) {
    EXPECT_EQ(floatingPoint("12.5"), 12.5);
    EXPECT_EQ(floatingPoint("0"), 0.0);
    EXPECT_EQ(floatingPoint("+1.0"), 1.0);
    for (const std::string_view text : {"", "12,5", "1.0x", " 1", "."}) {
        EXPECT_EQ(floatingPoint(text), std::nullopt) << text;
    }
}

TEST(Path, endsWithItsLastComponent) {
    EXPECT_EQ(lastPathComponent("/usr/bin/codex"), "codex");
    EXPECT_EQ(lastPathComponent("/src/codex//"), "codex");
    EXPECT_EQ(lastPathComponent("codex"), "codex");
    EXPECT_EQ(lastPathComponent("/"), "");
    EXPECT_EQ(lastPathComponent(""), "");
}

TEST(Utf8, isRecognised) {
    for (const std::string_view text : {"", "a", "ä€😀", "\u0000"}) {
        EXPECT_TRUE(isUtf8(text)) << text;
    }
    for (const std::string_view text : {"\xFF", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                                        "\xE2\x82", "\x80", "\xF0\x80\x80\x80"}) {
        EXPECT_FALSE(isUtf8(text));
    }
}

/// The bytes of a code point by the formula alone, which surrogates and overlong forms follow too.
std::string bytesOf(char32_t codePoint, std::size_t length) {
    constexpr std::array<unsigned, 5> marks{0, 0, 0xC0, 0xE0, 0xF0};
    std::string bytes(length, '\0');
    for (std::size_t index = length - 1; index > 0; --index) {
        bytes[index] = static_cast<char>(0x80U | (codePoint & 0x3FU));
        codePoint >>= 6;
    }
    bytes[0] = static_cast<char>(marks.at(length) | codePoint);
    return bytes;
}

TEST(Utf8, givesEveryCodePointBackFromItsShortestFormOnly) {
    constexpr std::array<char32_t, 5> beyond{0, 0x80, 0x800, 0x10000, 0x200000};
    for (std::size_t length = 2; length < beyond.size(); ++length) {
        for (char32_t codePoint = 0; codePoint < beyond.at(length); ++codePoint) {
            const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
            const bool isValid =
                codePoint >= beyond.at(length - 1) && codePoint <= 0x10FFFF && !isSurrogate;
            const Decoded decoded = decodeFirst(bytesOf(codePoint, length));
            ASSERT_EQ(decoded.isValid, isValid)
                << std::hex << static_cast<std::uint32_t>(codePoint) << " in " << length;
            if (isValid) {
                ASSERT_TRUE(decoded.codePoint == codePoint);
                ASSERT_EQ(decoded.length, length);
            }
        }
    }
}

TEST(Parts, areWhatStandsBetweenSeparators) {
    using Found = std::vector<std::string_view>;
    EXPECT_EQ(parts("a:b c:", ':'), (Found{"a", "b c"}));
    EXPECT_EQ(parts("::a::b", ':'), (Found{"a", "b"}));
    EXPECT_EQ(parts("a:b", ';'), Found{"a:b"});
    EXPECT_EQ(parts("", ':'), Found{});
    EXPECT_EQ(parts(":", ':'), Found{});
}

TEST(DisplayText, replacesWhatIsNoTextAndDropsWhatWouldMislead) {
    EXPECT_EQ(displayText("webapp"), "webapp");
    EXPECT_EQ(displayText("a\xFF"
                          "b"),
              "a\uFFFDb");
    EXPECT_EQ(displayText("\xE2\x82"
                          "a"),
              "\uFFFDa");
    EXPECT_EQ(displayText("a\nb\tc\x1B[31m\x7F"), "abc[31m");
    EXPECT_EQ(displayText("a\u202Eb\u2066c\u200Fd\u0085e\u2028f"), "abcdef");
    EXPECT_EQ(displayText("naïve 名前"), "naïve 名前");
}

} // namespace
} // namespace vigilo
