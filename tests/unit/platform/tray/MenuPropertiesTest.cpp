#include "platform/linux/tray/MenuProperties.h"

#include <gtest/gtest.h>

namespace vigilo::platform {
namespace {

QVariantMap labelled(const char* label) {
    return {{QStringLiteral("label"), QString::fromUtf8(label)}};
}

TEST(MenuProperties, leaveOutWhatIsAssumedAnyway) {
    EXPECT_EQ(menuProperties({.title = "Open", .action = "showWindow"}), labelled("Open"));
    EXPECT_EQ(menuProperties({.isSeparator = true}),
              (QVariantMap{{QStringLiteral("type"), QStringLiteral("separator")}}));
}

TEST(MenuProperties, keepAnUnderscoreFromMarkingALetter) {
    EXPECT_EQ(menuProperties({.title = "a_b"}), labelled("a__b"));
}

TEST(MenuProperties, sayThatALineOnlyInforms) {
    EXPECT_EQ(menuProperties({.title = "a", .isEnabled = false}).value(QStringLiteral("enabled")),
              false);
}

TEST(MenuProperties, nameKeysAsTheServerDoes) {
    const auto shortcut = [](char key) {
        return menuProperties({.title = "a", .keyEquivalent = key})
            .value(QStringLiteral("shortcut"))
            .value<MenuShortcut>();
    };
    EXPECT_EQ(shortcut('o'), (MenuShortcut{{QStringLiteral("Control"), QStringLiteral("O")}}));
    EXPECT_EQ(shortcut(','), (MenuShortcut{{QStringLiteral("Control"), QStringLiteral("comma")}}));
}

TEST(MenuProperties, knowAStateThatIsNeitherOnNorOff) {
    const auto state = [](CheckState checkState) {
        return menuProperties({.title = "a", .checkState = checkState})
            .value(QStringLiteral("toggle-state"));
    };
    EXPECT_FALSE(state(CheckState::none).isValid());
    EXPECT_EQ(state(CheckState::off), 0);
    EXPECT_EQ(state(CheckState::on), 1);
    EXPECT_EQ(state(CheckState::mixed), -1);
}

TEST(PropertyChange, tellsWhatIsNewOrDifferentAndWhatIsGone) {
    const auto change = propertyChange(
        {{QStringLiteral("a"), 1}, {QStringLiteral("b"), 2}, {QStringLiteral("c"), 3}},
        {{QStringLiteral("a"), 1}, {QStringLiteral("b"), 9}, {QStringLiteral("d"), 4}});
    ASSERT_TRUE(change);
    EXPECT_EQ(change->updated, (QVariantMap{{QStringLiteral("b"), 9}, {QStringLiteral("d"), 4}}));
    EXPECT_EQ(change->removed, QStringList{QStringLiteral("c")});
}

TEST(PropertyChange, isNoneWhenNothingDiffers) {
    EXPECT_FALSE(propertyChange(labelled("a"), labelled("a")));
    EXPECT_FALSE(propertyChange({}, {}));
}

TEST(ChosenProperties, areAllWhenNoneIsNamed) {
    const QVariantMap all{{QStringLiteral("a"), 1}, {QStringLiteral("b"), 2}};
    EXPECT_EQ(chosenProperties(all, {}), all);
    EXPECT_EQ(chosenProperties(all, {QStringLiteral("b"), QStringLiteral("x")}),
              (QVariantMap{{QStringLiteral("b"), 2}}));
}

} // namespace
} // namespace vigilo::platform
