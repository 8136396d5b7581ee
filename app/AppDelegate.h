#pragma once

#include "core/AwakeController.h"
#include "platform/Application.h"
#include "platform/Authenticator.h"
#include "platform/LockGuard.h"
#include "platform/Screens.h"
#include "platform/Windows.h"
#include "privacy/PrivacyWindow.h"
#include "ui/VigiloView.h"

#include <memory>
#include <string_view>
#include <vector>

namespace vigilo {

/// Owns what lives for the whole run: the controller, the main window and, while the Agent Lock is
/// up, a privacy window for each display; reacts to the controller's callbacks. Main thread only;
/// make it with std::make_shared, since callbacks hold it weakly.
class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
public:
    /// The outside world; everything named outlives the delegate.
    struct Environment {
        AwakeController::Environment controller;
        platform::Application& application;
        platform::Windows& windows;
        platform::Screens& screens;
        platform::Authenticator& authenticator;
        platform::LockGuard& lockGuard;
    };

    explicit AppDelegate(Environment environment);

    void applicationDidFinishLaunching();

    /// Releases what the session holds; no reaction of the delegate runs any more.
    void applicationWillTerminate();

    /// The program was started again: shows the main window unless a window is visible. Always
    /// true.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

    /// Does what an action's name says: showWindow, toggleProtection, agentLock, appleLock,
    /// openLockSettings or quitApp. Any other name does nothing.
    void performAction(std::string_view name);

    void showWindow();
    void quitApp();

    /// Starts a session until stopped with the screen left visible, or ends the running one.
    void toggleProtection();

    void agentLock();
    void appleLock();
    void openLockSettings();

    /// Covers every display with the lock screen, anew when it is up already.
    void showAgentLock();

    /// The displays have changed: covers them anew while the lock is up.
    void screenParametersChanged();

    /// Asks who is there, and uncovers the displays when it is the owner. The session goes on.
    void authenticateAndUnlock();

    const std::shared_ptr<AwakeController>& controller() const { return controller_; }

private:
    void makeMainWindow();
    void bindCallbacks();
    platform::Window& window();
    std::unique_ptr<PrivacyWindow> makePrivacyWindow(const platform::Screen& screen);
    void closePrivacyWindows();
    void discard(std::vector<std::unique_ptr<PrivacyWindow>> windows);

    Environment environment_;
    std::shared_ptr<AwakeController> controller_;
    std::unique_ptr<VigiloView> view_;
    std::unique_ptr<platform::Window> window_;
    std::vector<std::unique_ptr<PrivacyWindow>>
        privacyWindows_; ///< the lock is up while there are any
};

} // namespace vigilo
