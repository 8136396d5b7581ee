#include "app/AppDelegate.h"

#include "app/LaunchAtLogin.h"
#include "app/Menus.h"
#include "platform/Fatal.h"

#include <array>
#include <chrono>
#include <optional>
#include <utility>

namespace vigilo {

namespace {
using namespace std::chrono_literals;
// By then the system's lock, which the controller puts off for as long as the covers need to go,
// has been asked for.
constexpr auto guardAfterCovers = 1000ms;
constexpr int contentWidth = 720;
constexpr int contentHeight = 560;
constexpr double statusItemLength = 30;
constexpr platform::Colour windowBackground{.red = 0.035, .green = 0.045, .blue = 0.075};
} // namespace

AppDelegate::AppDelegate(Environment environment)
    : environment_(std::move(environment)),
      controller_(std::make_shared<AwakeController>(environment_.controller)) {}

AppDelegate::~AppDelegate() {
    // The members' own order is the other way round, and would uncover the displays first.
    controller_.reset();
    statusItem_.reset();
    window_.reset();
    privacyWindows_.clear();
}

void AppDelegate::applicationDidFinishLaunching() {
    environment_.application.loadIcon();
    makeMainWindow();
    environment_.menuBar.observe(menuRequests(&AppDelegate::rebuildMainMenu));
    rebuildMainMenu();
    makeStatusItem();
    rebuildMenu();
    bindCallbacks();
    environment_.screens.observe(weakly(&AppDelegate::screenParametersChanged));
    controller_->startAgentMonitoring();
    showWindow();
}

/// An action that does nothing once the delegate is gone.
std::function<void()> AppDelegate::weakly(void (AppDelegate::*action)()) {
    return [weak = weak_from_this(), action] {
        if (const auto self = weak.lock()) {
            (self.get()->*action)();
        }
    };
}

void AppDelegate::makeMainWindow() {
    view_ = std::make_unique<VigiloView>(controller_);
    window_ = environment_.windows.makeWindow({.title = "Vigilo",
                                               .width = contentWidth,
                                               .height = contentHeight,
                                               .background = windowBackground,
                                               .content = "VigiloView",
                                               .model = view_.get()},
                                              weakly(&AppDelegate::closeWindow));
}

void AppDelegate::makeStatusItem() {
    statusItem_ =
        environment_.statusBar.makeStatusItem({.length = statusItemLength,
                                               .menu = menuRequests(&AppDelegate::rebuildMenu),
                                               .onPressed = weakly(&AppDelegate::showWindow)});
}

/// Rebuilt when it opens too, since nobody tells when the login item changes outside.
platform::MenuRequests AppDelegate::menuRequests(void (AppDelegate::*rebuild)()) {
    return {.onAction =
                [weak = weak_from_this()](const std::string& action) {
                    if (const auto self = weak.lock()) {
                        self->performAction(action);
                    }
                },
            .onWillOpen = weakly(rebuild)};
}

void AppDelegate::rebuildMenu() {
    if (!statusItem_) {
        fatal("the status item is used before the launch has finished");
    }
    statusItem_->setMenu(statusMenu(*controller_, launchAtLoginMenuItem(environment_.loginItem)));
    statusItem_->setImage(statusImage(*controller_));
    statusItem_->setToolTip(statusToolTip(*controller_));
}

void AppDelegate::rebuildMainMenu() {
    environment_.menuBar.setMainMenu(
        mainMenu(*controller_, launchAtLoginMenuItem(environment_.loginItem)));
    environment_.menuBar.setDockMenu(applicationDockMenu());
}

void AppDelegate::bindCallbacks() {
    controller_->onStateChange = [rebuildMenu = weakly(&AppDelegate::rebuildMenu),
                                  rebuildMainMenu = weakly(&AppDelegate::rebuildMainMenu)] {
        rebuildMenu();
        rebuildMainMenu();
    };
    controller_->onStatusRefresh = weakly(&AppDelegate::rebuildMenu);
    controller_->onAgentLockRequested = weakly(&AppDelegate::showAgentLock);
    controller_->onSessionEnded = weakly(&AppDelegate::closePrivacyWindows);
    // An expired Agent Lock must not leave the machine open, so the system's own lock takes over.
    controller_->onAgentLockExpired = [weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->giveWayToSystemLock();
            self->controller_->lockScreenNow();
        }
    };
}

void AppDelegate::applicationWillTerminate() {
    controller_->onStateChange = nullptr;
    controller_->onStatusRefresh = nullptr;
    controller_->onAgentLockRequested = nullptr;
    controller_->onSessionEnded = nullptr;
    controller_->onAgentLockExpired = nullptr;
    environment_.screens.observe(nullptr);
    environment_.lockGuard.lower();
    environment_.notifications.resume();
    controller_->tearDown();
}

bool AppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows) {
    if (!hasVisibleWindows) {
        showWindow();
    }
    return true;
}

platform::Menu AppDelegate::applicationDockMenu() const {
    return dockMenu(*controller_);
}

void AppDelegate::performAction(std::string_view name) {
    struct Row {
        std::string_view name;
        void (AppDelegate::*action)();
    };
    constexpr std::array rows{
        Row{"showWindow", &AppDelegate::showWindow},
        Row{"showAbout", &AppDelegate::showAbout},
        Row{"toggleProtection", &AppDelegate::toggleProtection},
        Row{"agentLock", &AppDelegate::agentLock},
        Row{"appleLock", &AppDelegate::appleLock},
        Row{"openLockSettings", &AppDelegate::openLockSettings},
        Row{"toggleLaunchAtLogin", &AppDelegate::toggleLaunchAtLogin},
        Row{"quitApp", &AppDelegate::quitApp},
    };
    for (const Row& row : rows) {
        if (row.name == name) {
            (this->*row.action)();
        }
    }
}

void AppDelegate::showWindow() {
    window().makeKeyAndOrderFront();
    environment_.application.activateIgnoringOtherApps();
}

void AppDelegate::showAbout() {
    environment_.application.orderFrontStandardAboutPanel();
    environment_.application.activateIgnoringOtherApps();
}

void AppDelegate::quitApp() {
    environment_.application.terminate();
}

void AppDelegate::toggleProtection() {
    if (controller_->isActive()) {
        controller_->stop();
    } else {
        controller_->start(std::nullopt, AwakeMode::visible);
    }
}

void AppDelegate::agentLock() {
    controller_->showAgentLockPreservingSession();
}

void AppDelegate::appleLock() {
    controller_->useAppleLockPreservingSession();
}

void AppDelegate::openLockSettings() {
    controller_->openLockSettings();
}

void AppDelegate::toggleLaunchAtLogin() {
    if (vigilo::toggleLaunchAtLogin(environment_.loginItem, environment_.controller.alerts)) {
        rebuildMenu();
        rebuildMainMenu();
    }
}

void AppDelegate::showAgentLock() {
    std::vector<std::unique_ptr<PrivacyWindow>> windows;
    for (const platform::Screen& screen : environment_.screens.screens()) {
        windows.push_back(makePrivacyWindow(screen));
    }
    // Only now: while a display server shows one it answers late to what makes the next.
    for (const auto& window : windows) {
        window->orderFrontRegardless();
    }
    // Without a display the old ones stay, and with them the lock for the display that comes next.
    if (!windows.empty()) {
        // The new covers stand before the old ones go, so that nothing shows in between.
        discard(std::exchange(privacyWindows_, std::move(windows)));
        environment_.lockGuard.raise();
        environment_.notifications.silence();
        privacyWindows_.front()->makeKey();
    }
    environment_.application.activateIgnoringOtherApps();
}

std::unique_ptr<PrivacyWindow> AppDelegate::makePrivacyWindow(const platform::Screen& screen) {
    return std::make_unique<PrivacyWindow>(
        environment_.windows, screen, controller_, weakly(&AppDelegate::authenticateAndUnlock),
        [weak = weak_from_this()] {
            if (const auto self = weak.lock()) {
                self->giveWayToSystemLock();
                self->controller_->useAppleLockPreservingSession();
            }
        });
}

void AppDelegate::screenParametersChanged() {
    if (!privacyWindows_.empty()) {
        showAgentLock();
    }
}

void AppDelegate::authenticateAndUnlock() {
    environment_.authenticator.evaluate(
        "Unlock Vigilo", "Stay Locked",
        [weak = weak_from_this(), &runLoop = environment_.controller.runLoop](bool isOwner) {
            if (!isOwner) {
                return;
            }
            runLoop.post([weak] {
                if (const auto self = weak.lock()) {
                    self->closePrivacyWindows();
                }
            });
        });
}

void AppDelegate::closeWindow() {
    window().close();
}

void AppDelegate::closePrivacyWindows() {
    uncover();
    environment_.lockGuard.lower();
}

/// The guard stays in between, where nothing else would hide the desktop if the program died.
void AppDelegate::giveWayToSystemLock() {
    uncover();
    environment_.controller.runLoop.runAfter(guardAfterCovers, weakly(&AppDelegate::dismissGuard));
}

void AppDelegate::dismissGuard() {
    // Covered again meanwhile, it is wanted again.
    if (privacyWindows_.empty()) {
        environment_.lockGuard.lower();
    }
}

void AppDelegate::uncover() {
    environment_.notifications.resume();
    discard(std::exchange(privacyWindows_, {}));
}

void AppDelegate::discard(std::vector<std::unique_ptr<PrivacyWindow>> windows) {
    for (const auto& window : windows) {
        window->close();
    }
    // A button of one of them may be what led here, so they go when it has returned.
    environment_.controller.runLoop.post(
        [kept = std::make_shared<std::vector<std::unique_ptr<PrivacyWindow>>>(std::move(windows))] {
            kept->clear();
        });
}

platform::Window& AppDelegate::window() {
    if (!window_) {
        fatal("the main window is used before the launch has finished");
    }
    return *window_;
}

} // namespace vigilo
