#include "platform/linux/power/InhibitMeans.h"

#include <gtest/gtest.h>

namespace vigilo::platform {
namespace {

using Means = std::vector<InhibitMeans>;

TEST(InhibitMeans, leavesPlasmaToItself) {
    EXPECT_EQ(
        chooseInhibitMeans({"org.gnome.SessionManager", "org.kde.Solid.PowerManagement.PolicyAgent",
                            "org.freedesktop.PowerManagement"}),
        (Means{InhibitMeans::plasma}));
}

TEST(InhibitMeans, addsLogindToTheOtherDesktops) {
    EXPECT_EQ(chooseInhibitMeans({"org.freedesktop.PowerManagement", "org.gnome.SessionManager"}),
              (Means{InhibitMeans::sessionManager, InhibitMeans::logind}));
    EXPECT_EQ(chooseInhibitMeans({"org.freedesktop.PowerManagement"}),
              (Means{InhibitMeans::powerManager, InhibitMeans::logind}));
}

TEST(InhibitMeans, isLogindAloneWithoutADesktop) {
    EXPECT_EQ(chooseInhibitMeans({}), (Means{InhibitMeans::logind}));
    EXPECT_EQ(chooseInhibitMeans({"org.freedesktop.ScreenSaver", "org.kde.Solid.PowerManagement"}),
              (Means{InhibitMeans::logind}));
}

} // namespace
} // namespace vigilo::platform
