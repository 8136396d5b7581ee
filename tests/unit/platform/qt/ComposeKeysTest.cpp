#include "platform/qt/prompt/ComposeKeys.h"

#include "platform/linux/authentication/SecretText.h"

#include <gtest/gtest.h>

#include <xkbcommon/xkbcommon-keysyms.h>

namespace vigilo::platform {
namespace {

using Outcome = ComposeKeys::Outcome;

class ComposeKeysTest : public testing::TestWithParam<const char*> {
protected:
    Outcome press(std::uint32_t keysym) { return keys.press(keysym, text); }

    ComposeKeys keys{GetParam()};
    SecretText text;
};

TEST_P(ComposeKeysTest, leavesKeysThatStandForThemselves) {
    EXPECT_EQ(press(XKB_KEY_e), Outcome::ordinary);
    EXPECT_EQ(press(XKB_KEY_Return), Outcome::ordinary);
    EXPECT_TRUE(text.isEmpty());
}

TEST_P(ComposeKeysTest, addsWhatSeveralKeysMake) {
    EXPECT_EQ(press(XKB_KEY_dead_acute), Outcome::composing);
    EXPECT_EQ(press(XKB_KEY_e), Outcome::composed);
    EXPECT_EQ(press(XKB_KEY_e), Outcome::ordinary);
    EXPECT_EQ(press(XKB_KEY_dead_circumflex), Outcome::composing);
    EXPECT_EQ(press(XKB_KEY_space), Outcome::composed);
    EXPECT_EQ(press(XKB_KEY_Multi_key), Outcome::composing);
    EXPECT_EQ(press(XKB_KEY_s), Outcome::composing);
    EXPECT_EQ(press(XKB_KEY_s), Outcome::composed);
    EXPECT_EQ(text.view(), "\u00E9^\u00DF");
}

TEST_P(ComposeKeysTest, goesOnAfterAShiftKey) {
    EXPECT_EQ(press(XKB_KEY_dead_acute), Outcome::composing);
    EXPECT_EQ(press(XKB_KEY_Shift_L), Outcome::ordinary);
    EXPECT_EQ(press(XKB_KEY_E), Outcome::composed);
    EXPECT_EQ(text.view(), "\u00C9");
}

TEST_P(ComposeKeysTest, tellsWhenACharacterIsBrokenOff) {
    EXPECT_EQ(press(XKB_KEY_dead_acute), Outcome::composing);
    EXPECT_EQ(press(XKB_KEY_BackSpace), Outcome::cancelled);
    EXPECT_EQ(press(XKB_KEY_e), Outcome::ordinary);
    EXPECT_EQ(press(XKB_KEY_dead_acute), Outcome::composing);
    keys.reset();
    EXPECT_EQ(press(XKB_KEY_e), Outcome::ordinary);
    EXPECT_TRUE(text.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Locales, ComposeKeysTest,
                         testing::Values("de_DE.UTF-8", "pt_BR.UTF-8", "C.UTF-8", "C",
                                         "no such locale"));

} // namespace
} // namespace vigilo::platform
