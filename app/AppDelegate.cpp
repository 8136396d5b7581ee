#include "app/AppDelegate.h"

#include "platform/Fatal.h"

#include <optional>
#include <utility>

namespace vigilo {

namespace {
constexpr int contentWidth = 720;
constexpr int contentHeight = 560;
constexpr platform::Colour windowBackground{.red = 0.035, .green = 0.045, .blue = 0.075};
} // namespace

AppDelegate::AppDelegate(Environment environment)
    : environment_(std::move(environment)),
      controller_(std::make_shared<AwakeController>(environment_.controller)) {}

void AppDelegate::applicationDidFinishLaunching() {
    environment_.application.loadIcon();
    makeMainWindow();
    bindCallbacks();
    controller_->startAgentMonitoring();
    showWindow();
}

void AppDelegate::makeMainWindow() {
    view_ = std::make_unique<VigiloView>(controller_);
    window_ = environment_.windows.makeWindow({.title = "Vigilo",
                                               .width = contentWidth,
                                               .height = contentHeight,
                                               .background = windowBackground,
                                               .content = "VigiloView",
                                               .model = view_.get()},
                                              [weak = weak_from_this()] {
                                                  if (const auto self = weak.lock()) {
                                                      self->window().close();
                                                  }
                                              });
}

void AppDelegate::bindCallbacks() {
    // An expired Agent Lock must not leave the machine open, so the system's own lock takes over.
    controller_->onAgentLockExpired = [weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
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
    controller_->tearDown();
}

bool AppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows) {
    if (!hasVisibleWindows) {
        showWindow();
    }
    return true;
}

void AppDelegate::showWindow() {
    window().makeKeyAndOrderFront();
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

platform::Window& AppDelegate::window() {
    if (!window_) {
        fatal("the main window is used before the launch has finished");
    }
    return *window_;
}

} // namespace vigilo
