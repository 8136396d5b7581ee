#pragma once

#include "app/AppDelegate.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeLoginItem.h"
#include "tests/fakes/FakeMenus.h"
#include "tests/fakes/FakePowerAssertions.h"
#include "tests/fakes/FakeRunLoop.h"
#include "tests/fakes/FakeWallClock.h"
#include "tests/fakes/FakeWindows.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace vigilo {

/// A delegate among fakes that write down, in order, what it asks of the desktop.
class AppDelegateTest : public testing::Test {
protected:
    void launch() {
        delegate->applicationDidFinishLaunching();
        runLoop.runBackgroundWork();
    }

    AwakeController& controller() { return *delegate->controller(); }

    /// What has been asked of windows and application alone.
    fakes::DesktopLog windowLog() const {
        fakes::DesktopLog rest = log;
        std::erase_if(rest, [](const std::string& line) { return line.ends_with(" menu"); });
        return rest;
    }

    fakes::DesktopLog log;
    fakes::FakeWallClock clock;
    fakes::FakeRunLoop runLoop{clock};
    fakes::FakePowerAssertions power;
    fakes::FakeSystemLock systemLock;
    fakes::FakeWorkspace workspace;
    fakes::FakeAlerts alerts;
    fakes::FakeApplication application{log};
    fakes::FakeMenuBar menuBar{log};
    fakes::FakeStatusBar statusBar{log};
    fakes::FakeLoginItem loginItem;
    fakes::FakeWindows windows{log};
    fakes::FakeScreens screens;
    fakes::FakeAuthenticator authenticator;
    fakes::FakeLockGuard lockGuard;
    fakes::FakeNotifications notifications;
    std::vector<AgentSession> agents;
    std::shared_ptr<AppDelegate> delegate = std::make_shared<AppDelegate>(AppDelegate::Environment{
        .controller = {.runLoop = runLoop,
                       .wallClock = clock,
                       .powerAssertions = power,
                       .systemLock = systemLock,
                       .workspace = workspace,
                       .alerts = alerts,
                       .readAgentProcesses = [this] { return agents; }},
        .application = application,
        .menuBar = menuBar,
        .statusBar = statusBar,
        .loginItem = loginItem,
        .windows = windows,
        .screens = screens,
        .authenticator = authenticator,
        .lockGuard = lockGuard,
        .notifications = notifications,
    });
};

} // namespace vigilo
