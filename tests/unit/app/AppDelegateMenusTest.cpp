#include "tests/unit/app/AppDelegateFixture.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace vigilo {
namespace {

using namespace std::chrono_literals;
using fakes::DesktopLog;
using platform::CheckState;
using platform::LoginItemStatus;

class AppDelegateMenus : public AppDelegateTest {
protected:
    void SetUp() override {
        launch();
        log.clear();
    }

    const platform::MenuItem& launchAtLogin() const {
        return statusBar.menu.items[statusBar.menu.items.size() - 3];
    }
};

TEST_F(AppDelegateMenus, theStatusItemIsThirtyPointsLongAndFilledAtTheLaunch) {
    EXPECT_EQ(statusBar.spec.length, 30);
    EXPECT_EQ(statusBar.menu.items.size(), 11u);
    EXPECT_EQ(statusBar.image.symbol, "bolt.shield");
    EXPECT_EQ(statusBar.toolTip, "Vigilo \u2014 Normal sleep");
}

TEST_F(AppDelegateMenus, aChangeOfStateRebuildsTheStatusMenuAndThenTheMainMenu) {
    controller().start(std::nullopt);
    EXPECT_EQ(log, (DesktopLog{"status menu", "main menu"}));
    EXPECT_EQ(statusBar.menu.items.size(), 12u);
    EXPECT_EQ(statusBar.image.symbol, "bolt.shield.fill");
    EXPECT_EQ(menuBar.mainMenu.items[0].submenu[3].title, "Stop Keeping Awake");
    EXPECT_EQ(menuBar.dockMenu.items[1].title, "Stop Keeping Awake");
}

TEST_F(AppDelegateMenus, aRefreshRebuildsTheStatusMenuOnly) {
    agents = {{.pid = 1, .name = "Codex", .project = "webapp", .runtime = "5m"}};
    controller().startAgentMonitoring();
    runLoop.runBackgroundWork();
    EXPECT_EQ(log, DesktopLog{"status menu"});
    EXPECT_EQ(statusBar.menu.items[1].title, "1 agent process detected");
}

TEST_F(AppDelegateMenus, theMinutesThatPassShowInTheStatusMenu) {
    controller().start(90);
    const std::string before = statusBar.menu.items[1].title;
    runLoop.advance(10min);
    EXPECT_NE(statusBar.menu.items[1].title, before);
    EXPECT_EQ(statusBar.menu.items[1].title, controller().remainingLabel());
}

TEST_F(AppDelegateMenus, everyActionOfEveryMenuIsCarriedOut) {
    statusBar.spec.menu.onAction("toggleProtection");
    EXPECT_TRUE(controller().isActive());
    menuBar.requests.onAction("toggleProtection");
    EXPECT_FALSE(controller().isActive());
    log.clear();
    menuBar.requests.onAction("showAbout");
    EXPECT_EQ(log, (DesktopLog{"about", "activate"}));
}

TEST_F(AppDelegateMenus, pressingTheStatusItemShowsTheWindow) {
    windows.requestClose();
    log.clear();
    statusBar.spec.onPressed();
    EXPECT_EQ(log, (DesktopLog{"show", "activate"}));
}

TEST_F(AppDelegateMenus, aMenuThatOpensShowsTheLoginItemAsItIsThen) {
    loginItem.current = LoginItemStatus::requiresApproval;
    statusBar.spec.menu.onWillOpen();
    EXPECT_EQ(launchAtLogin().title, "Launch at Login \u2014 Approval Required");
    EXPECT_EQ(launchAtLogin().checkState, CheckState::mixed);
    menuBar.requests.onWillOpen();
    EXPECT_EQ(menuBar.mainMenu.items[0].submenu[9], launchAtLogin());
}

TEST_F(AppDelegateMenus, switchingTheStartAtLoginRebuildsBothMenus) {
    delegate->toggleLaunchAtLogin();
    EXPECT_EQ(log, (DesktopLog{"status menu", "main menu"}));
    EXPECT_EQ(launchAtLogin().checkState, CheckState::on);
    delegate->toggleLaunchAtLogin();
    EXPECT_EQ(launchAtLogin().checkState, CheckState::off);
    EXPECT_EQ(loginItem.calls, (std::vector<std::string>{"register", "unregister"}));
}

TEST_F(AppDelegateMenus, pendingApprovalOpensTheSettingsAndRebuildsBothMenus) {
    loginItem.current = LoginItemStatus::requiresApproval;
    delegate->toggleLaunchAtLogin();
    EXPECT_EQ(loginItem.calls, std::vector<std::string>{"open settings"});
    EXPECT_EQ(log, (DesktopLog{"status menu", "main menu"}));
}

TEST_F(AppDelegateMenus, aFailedSwitchShowsOneAlertAndLeavesTheMenus) {
    loginItem.error = "/home/a: Read-only file system";
    delegate->toggleLaunchAtLogin();
    ASSERT_EQ(alerts.shown.size(), 1u);
    EXPECT_EQ(alerts.shown[0].informativeText, "/home/a: Read-only file system");
    EXPECT_EQ(log, DesktopLog{});
}

TEST_F(AppDelegateMenus, nothingIsRebuiltOnceTheEndHasBegun) {
    delegate->applicationWillTerminate();
    log.clear();
    controller().start(std::nullopt);
    EXPECT_EQ(log, DesktopLog{});
}

TEST_F(AppDelegateMenus, menusThatOutliveTheDelegateDoNothing) {
    const auto spec = statusBar.spec;
    const auto requests = menuBar.requests;
    delegate.reset();
    log.clear();
    spec.menu.onAction("quitApp");
    spec.menu.onWillOpen();
    spec.onPressed();
    requests.onAction("quitApp");
    EXPECT_EQ(log, DesktopLog{});
}

} // namespace
} // namespace vigilo
