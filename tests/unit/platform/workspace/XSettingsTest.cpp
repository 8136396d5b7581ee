#include "platform/linux/workspace/XSettings.h"

#include <gtest/gtest.h>

#include <string>

namespace vigilo::platform {
namespace {

using namespace std::string_literals;

/// Writes what a settings daemon would.
class Written {
public:
    explicit Written(bool isBigEndian) : isBigEndian_(isBigEndian) {}

    Written& number(const std::string& name, std::uint32_t value) {
        begin(0, name);
        add(value, 4);
        return *this;
    }

    Written& text(const std::string& name, const std::string& value) {
        begin(1, name);
        add(static_cast<std::uint32_t>(value.size()), 4);
        pad(value);
        return *this;
    }

    Written& colour(const std::string& name) {
        begin(2, name);
        settings_ += "\1\2\3\4\5\6\7\10"s;
        return *this;
    }

    Written& unknown(const std::string& name) {
        begin(3, name);
        return *this;
    }

    std::string bytes() {
        const std::string settings = settings_;
        settings_ = (isBigEndian_ ? "\1"s : "\0"s) + "\0\0\0"s;
        add(7, 4);
        add(count_, 4);
        return settings_ + settings;
    }

private:
    void begin(char kind, const std::string& name) {
        ++count_;
        settings_ += kind + "\0"s;
        add(static_cast<std::uint32_t>(name.size()), 2);
        pad(name);
        add(1, 4);
    }

    void pad(const std::string& text) {
        settings_ += text;
        settings_.resize((settings_.size() + 3) / 4 * 4);
    }

    void add(std::uint32_t value, unsigned size) {
        for (unsigned index = 0; index < size; ++index) {
            const unsigned place = isBigEndian_ ? size - 1 - index : index;
            settings_ += static_cast<char>(value >> (8U * place) & 0xFFU);
        }
    }

    bool isBigEndian_;
    std::uint32_t count_ = 0;
    std::string settings_;
};

Written desktop(bool isBigEndian) {
    return Written(isBigEndian)
        .number("Gtk/EnableAnimations", 0)
        .colour("Gtk/Odd")
        .text("Net/ThemeName", "HighContrast")
        .number("Xft/DPI", 0xFFFFFFFF)
        .text("", "");
}

const XSettings onDesktop{
    {"Gtk/EnableAnimations", 0}, {"Net/ThemeName", "HighContrast"}, {"Xft/DPI", -1}, {"", ""}};

TEST(XSettings, areReadInEitherOrderOfBytes) {
    for (const bool isBigEndian : {false, true}) {
        const std::string bytes = desktop(isBigEndian).bytes();
        EXPECT_EQ(parseXSettings(bytes), onDesktop) << isBigEndian;
    }
}

TEST(XSettings, areThoseThatAreWholeWhereTheyBreakOff) {
    const std::string bytes = desktop(false).bytes();
    std::size_t before = 0;
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        const XSettings settings = parseXSettings(std::string_view(bytes).substr(0, size));
        EXPECT_GE(settings.size(), before);
        EXPECT_LT(settings.size(), onDesktop.size());
        for (const auto& [name, value] : settings) {
            EXPECT_EQ(onDesktop.at(name), value);
        }
        before = settings.size();
    }
    EXPECT_EQ(before, onDesktop.size() - 1);
}

TEST(XSettings, endWhereAKindIsUnknown) {
    const std::string bytes = Written(true).number("A", 1).unknown("B").number("C", 2).bytes();
    EXPECT_EQ(parseXSettings(bytes), XSettings({{"A", 1}}));
}

TEST(XSettings, areTheLastOfOneName) {
    const std::string bytes = Written(false).number("A", 1).text("A", "b").bytes();
    EXPECT_EQ(parseXSettings(bytes), XSettings({{"A", "b"}}));
}

TEST(XSettings, areAsManyAsThereAreHoweverManyAreSaid) {
    std::string bytes = Written(false).number("A", 1).bytes();
    bytes.replace(8, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(parseXSettings(bytes), XSettings({{"A", 1}}));
    bytes.replace(8, 4, "\0\0\0\0"s);
    EXPECT_EQ(parseXSettings(bytes), XSettings());
    EXPECT_EQ(parseXSettings({}), XSettings());
}

} // namespace
} // namespace vigilo::platform
