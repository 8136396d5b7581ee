#include "agents/ProcessTableReader.h"
#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/SelfTest.h"
#include "platform/linux/InheritedState.h"
#include "platform/linux/SystemWallClock.h"
#include "platform/linux/bus/BusProbe.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/guard/HelperLockGuard.h"
#include "platform/linux/instance/ApplicationService.h"
#include "platform/linux/lock/DesktopSystemLock.h"
#include "platform/linux/login/XdgLoginItem.h"
#include "platform/linux/notifications/DesktopNotifications.h"
#include "platform/linux/power/DesktopPowerAssertions.h"
#include "platform/linux/power/PortalInhibition.h"
#include "platform/linux/processes/ProcfsProcessTable.h"
#include "platform/linux/workspace/Appearance.h"
#include "platform/linux/workspace/DesktopWorkspace.h"
#include "platform/qt/ApplicationObject.h"
#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtAuthenticator.h"
#include "platform/qt/QtMenuBar.h"
#include "platform/qt/QtRunLoop.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/QtWindows.h"
#include "platform/qt/StartupNotification.h"
#include "platform/qt/XSettingsWatch.h"
#include "platform/qt/tray/QtStatusBar.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace vigilo;
using namespace std::chrono_literals;

/// A scan that owns all it reads with, so that one stuck in the kernel can be left behind at exit.
AgentMonitor::Scan agentScan() {
    struct Source {
        platform::ProcfsProcessTable table;
        ProcessTableReader reader{table};
    };
    return [source = std::make_shared<Source>()] { return source->reader.readAgentProcesses(); };
}

int runApplication(char* programName) {
    platform::settleInheritedState();
    platform::leaveHungSessionBus();
    platform::ApplicationObject applicationObject(programName);
    platform::QtRunLoop runLoop;
    platform::SessionBus sessionBus(runLoop);
    platform::AppearanceQuestion appearanceQuestion(sessionBus.connection());
    platform::ApplicationService service(sessionBus);
    switch (service.claim(applicationObject.startupId())) {
    case platform::ApplicationService::Claim::first:
        break;
    case platform::ApplicationService::Claim::passedOn:
        return EXIT_SUCCESS;
    case platform::ApplicationService::Claim::doesNotAnswer:
        std::fputs("vigilo: it is running already but does not answer.\n", stderr);
        return EXIT_FAILURE;
    }
    platform::QtMenuBar menuBar(sessionBus);
    const platform::Appearance appearance = appearanceQuestion.answer();
    platform::ApplicationObject::scale(appearance.textScale);
    platform::QtWindows windows(menuBar.mainMenu());
    const platform::XSettingsWatch xSettings([&](const platform::XSettings& settings) {
        const platform::Appearance all = platform::withXSettings(appearance, settings);
        windows.setLook({.isAnimated = all.isAnimated, .isContrastHigh = all.isContrastHigh});
    });
    platform::QtApplication qtApplication(windows);
    platform::SystemWallClock wallClock;
    platform::DesktopPowerAssertions powerAssertions(runLoop, platform::isInsideFlatpak());
    platform::DesktopSystemLock systemLock;
    platform::DesktopWorkspace workspace;
    platform::QtAlerts alerts(windows);
    platform::QtStatusBar statusBar(windows, sessionBus,
                                    platform::QtApplication::useActivationToken);
    platform::XdgLoginItem loginItem(platform::autostartEnvironment());
    platform::QtScreens screens;
    platform::QtAuthenticator authenticator;
    platform::HelperLockGuard lockGuard;
    platform::DesktopNotifications notifications(sessionBus);
    const auto delegate = std::make_shared<AppDelegate>(AppDelegate::Environment{
        .controller = {.runLoop = runLoop,
                       .wallClock = wallClock,
                       .powerAssertions = powerAssertions,
                       .systemLock = systemLock,
                       .workspace = workspace,
                       .alerts = alerts,
                       .readAgentProcesses = agentScan()},
        .application = qtApplication,
        .menuBar = menuBar,
        .statusBar = statusBar,
        .loginItem = loginItem,
        .windows = windows,
        .screens = screens,
        .authenticator = authenticator,
        .lockGuard = lockGuard,
        .notifications = notifications,
    });

    runLoop.post([weak = std::weak_ptr(delegate)] {
        if (const auto launched = weak.lock()) {
            launched->applicationDidFinishLaunching();
        }
    });
    const auto take = [](const platform::ApplicationService::Activation& activation) {
        platform::QtApplication::useActivationToken(activation.token);
        platform::endStartupNotification(activation.startupId);
    };
    service.serve({
        .onActivate =
            [&, take](const platform::ApplicationService::Activation& activation) {
                take(activation);
                runLoop.post([&] {
                    if (delegate->applicationShouldHandleReopen(
                            qtApplication.hasVisibleWindows())) {
                        // Whoever starts a program wants to see it, also when others hide it.
                        qtApplication.activateIgnoringOtherApps();
                    }
                });
            },
        .onAction =
            [&, take](const std::string& action,
                      const platform::ApplicationService::Activation& activation) {
                take(activation);
                runLoop.post([&, action] { delegate->performAction(action); });
            },
    });
    const int status = applicationObject.run();
    delegate->applicationWillTerminate();
    runLoop.discardPosted();

    // A scan that the kernel holds up, or a bus that does not answer, must not hold up the end of
    // the program; what they still use is never destroyed then.
    if (!runLoop.finishBackgroundWork(500ms) || powerAssertions.isRequestUnderWay()) {
        std::_Exit(status);
    }
    return status;
}

} // namespace

int main(int argc, char* argv[]) {
    const std::vector<std::string_view> arguments(argv, argv + argc);
    switch (invocation(arguments)) {
    case Invocation::selfTest:
        return runSelfTests();
    case Invocation::help:
        std::fputs(helpText().data(), stdout);
        return EXIT_SUCCESS;
    case Invocation::version:
        std::puts("Vigilo " VIGILO_VERSION);
        return EXIT_SUCCESS;
    case Invocation::application:
        return runApplication(argc > 0 ? argv[0] : nullptr);
    }
}
