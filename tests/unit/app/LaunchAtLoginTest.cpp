#include "app/LaunchAtLogin.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeLoginItem.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vigilo {
namespace {

using platform::CheckState;
using platform::LoginItemStatus;
using Calls = std::vector<std::string>;
using Shown = std::vector<fakes::FakeAlerts::Alert>;

class LaunchAtLogin : public testing::Test {
protected:
    bool toggle(LoginItemStatus status) {
        loginItem.current = status;
        return toggleLaunchAtLogin(loginItem, alerts);
    }

    fakes::FakeLoginItem loginItem;
    fakes::FakeAlerts alerts;
};

TEST_F(LaunchAtLogin, isCheckedWhenEnabledAndMixedWhileApprovalIsWanted) {
    struct Case {
        LoginItemStatus status;
        std::string title;
        CheckState checkState;
    };
    const std::vector<Case> cases{
        {LoginItemStatus::notRegistered, "Launch at Login", CheckState::off},
        {LoginItemStatus::enabled, "Launch at Login", CheckState::on},
        {LoginItemStatus::requiresApproval, "Launch at Login \u2014 Approval Required",
         CheckState::mixed},
        {LoginItemStatus::notFound, "Launch at Login", CheckState::off},
    };
    for (const Case& one : cases) {
        loginItem.current = one.status;
        EXPECT_EQ(launchAtLoginMenuItem(loginItem),
                  (platform::MenuItem{.title = one.title,
                                      .action = "toggleLaunchAtLogin",
                                      .checkState = one.checkState}));
    }
    EXPECT_EQ(loginItem.calls, Calls{});
}

TEST_F(LaunchAtLogin, asksAfreshForTheTitleAndAgainForTheCheckMark) {
    loginItem.passing = {LoginItemStatus::requiresApproval, LoginItemStatus::enabled};
    const platform::MenuItem item = launchAtLoginMenuItem(loginItem);
    EXPECT_EQ(item.title, "Launch at Login \u2014 Approval Required");
    EXPECT_EQ(item.checkState, CheckState::on);
}

TEST_F(LaunchAtLogin, isSwitchedOffWhenEnabled) {
    EXPECT_TRUE(toggle(LoginItemStatus::enabled));
    EXPECT_EQ(loginItem.calls, Calls{"unregister"});
}

TEST_F(LaunchAtLogin, isSwitchedOnWhenNotRegisteredOrNotFound) {
    EXPECT_TRUE(toggle(LoginItemStatus::notRegistered));
    EXPECT_TRUE(toggle(LoginItemStatus::notFound));
    EXPECT_EQ(loginItem.calls, (Calls{"register", "register"}));
    EXPECT_EQ(alerts.shown, Shown{});
}

TEST_F(LaunchAtLogin, onlyOpensTheSettingsWhileApprovalIsWanted) {
    EXPECT_TRUE(toggle(LoginItemStatus::requiresApproval));
    EXPECT_EQ(loginItem.calls, Calls{"open settings"});
    EXPECT_EQ(alerts.shown, Shown{});
}

TEST_F(LaunchAtLogin, isNotSwitchedOnOnceTheUserIsFoundToHaveSwitchedItOff) {
    loginItem.passing = {LoginItemStatus::notRegistered, LoginItemStatus::requiresApproval};
    EXPECT_TRUE(toggleLaunchAtLogin(loginItem, alerts));
    EXPECT_EQ(loginItem.calls, Calls{"open settings"});
}

TEST_F(LaunchAtLogin, showsOneAlertWithTheSystemsTextAndLeavesTheMenusWhenAChangeFails) {
    loginItem.error = "/home/a: Read-only file system";
    for (const auto status : {LoginItemStatus::notRegistered, LoginItemStatus::enabled}) {
        alerts.shown.clear();
        EXPECT_FALSE(toggle(status));
        EXPECT_EQ(alerts.shown, (Shown{{"Couldn\u2019t update Launch at Login",
                                        "/home/a: Read-only file system"}}));
    }
    EXPECT_EQ(loginItem.calls, (Calls{"register", "unregister"}));
}

} // namespace
} // namespace vigilo
