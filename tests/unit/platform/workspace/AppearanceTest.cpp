#include "platform/linux/workspace/Appearance.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

namespace vigilo::platform {
namespace {

PortalSettings setting(const char* group, const char* key, const QVariant& value) {
    return {{QString::fromLatin1(group), {{QString::fromLatin1(key), value}}}};
}

PortalSettings gnome(const char* key, const QVariant& value) {
    return setting("org.gnome.desktop.interface", key, value);
}

TEST(Appearance, isAsUsualWhereNothingIsSaid) {
    EXPECT_EQ(appearance({}), Appearance());
    EXPECT_EQ(appearance(gnome("clock-show-seconds", true)), Appearance());
}

TEST(Appearance, takesATextScaleThatMakesSense) {
    for (const double scale : {0.5, 1.25, 3.0}) {
        EXPECT_EQ(appearance(gnome("text-scaling-factor", scale)).textScale, scale);
    }
    for (const QVariant& nonsense :
         {QVariant(0.49), QVariant(3.1), QVariant(-2.0), QVariant("2.0"), QVariant(2),
          QVariant(std::numeric_limits<double>::quiet_NaN())}) {
        EXPECT_EQ(appearance(gnome("text-scaling-factor", nonsense)), Appearance());
    }
}

TEST(Appearance, keepsStillWhereNothingIsToMove) {
    EXPECT_FALSE(appearance(gnome("enable-animations", false)).isAnimated);
    EXPECT_TRUE(appearance(gnome("enable-animations", true)).isAnimated);
    EXPECT_TRUE(appearance(gnome("enable-animations", "false")).isAnimated);
}

TEST(Appearance, standsOutMoreWhereAnyDesktopAsksForIt) {
    const std::vector<std::pair<PortalSettings, bool>> cases{
        {setting("org.freedesktop.appearance", "contrast", 1U), true},
        {setting("org.freedesktop.appearance", "contrast", 0U), false},
        {setting("org.freedesktop.appearance", "contrast", 2U), false},
        {setting("org.freedesktop.appearance", "contrast", "1"), false},
        {setting("org.gnome.desktop.a11y.interface", "high-contrast", true), true},
        {setting("org.gnome.desktop.a11y.interface", "high-contrast", false), false},
        {gnome("gtk-theme", "HighContrast"), true},
        {gnome("gtk-theme", "HighContrastInverse"), true},
        {gnome("gtk-theme", "Adwaita"), false},
        {setting("org.kde.kdeglobals.General", "ColorScheme", "BreezeHighContrast"), true},
        {setting("org.kde.kdeglobals.General", "ColorScheme", "BreezeDark"), false},
        {setting("org.kde.kdeglobals.General", "contrast", 1U), false},
    };
    for (std::size_t index = 0; index < cases.size(); ++index) {
        EXPECT_EQ(appearance(cases[index].first).isContrastHigh, cases[index].second) << index;
    }
}

TEST(Appearance, standsOutMoreWithAThemeOfAnX11Desktop) {
    const std::vector<std::pair<XSettings, bool>> cases{
        {{{"Net/ThemeName", "HighContrast"}}, true},
        {{{"Net/ThemeName", "HighContrastInverse"}}, true},
        {{{"Net/ThemeName", "ContrastHigh"}}, true},
        {{{"Net/ThemeName", "Adwaita"}}, false},
        {{{"Net/ThemeName", "\xFF"}}, false},
        {{{"Net/ThemeName", 1}}, false},
        {{{"Net/IconThemeName", "HighContrast"}}, false},
        {{}, false},
    };
    for (std::size_t index = 0; index < cases.size(); ++index) {
        EXPECT_EQ(withXSettings({}, cases[index].first).isContrastHigh, cases[index].second)
            << index;
    }
}

TEST(Appearance, keepsStillWhereAnX11DesktopMovesNothing) {
    EXPECT_FALSE(withXSettings({}, {{"Gtk/EnableAnimations", 0}}).isAnimated);
    EXPECT_TRUE(withXSettings({}, {{"Gtk/EnableAnimations", 1}}).isAnimated);
    EXPECT_TRUE(withXSettings({}, {{"Gtk/EnableAnimations", "0"}}).isAnimated);
}

TEST(Appearance, isWhatEitherSourceAsksFor) {
    const Appearance asked{.textScale = 2, .isAnimated = false, .isContrastHigh = true};
    EXPECT_EQ(withXSettings(asked, {}), asked);
    EXPECT_EQ(withXSettings(asked, {{"Gtk/EnableAnimations", 1}, {"Net/ThemeName", "Adwaita"}}),
              asked);
}

} // namespace
} // namespace vigilo::platform
