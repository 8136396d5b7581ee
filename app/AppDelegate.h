#pragma once

#include "core/AwakeController.h"
#include "platform/Application.h"
#include "platform/Authenticator.h"
#include "platform/LockGuard.h"
#include "platform/LoginItem.h"
#include "platform/MenuBar.h"
#include "platform/Notifications.h"
#include "platform/Screens.h"
#include "platform/StatusBar.h"
#include "platform/Windows.h"
#include "privacy/PrivacyWindow.h"
#include "ui/VigiloView.h"

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace vigilo {

/// Owns what lives for the whole run: the controller, the status item, the main window and, while
/// the Agent Lock is up, a privacy window for each display; reacts to the controller's callbacks.
/// Main thread only; make it with std::make_shared, since callbacks hold it weakly.
class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
public:
    /// The outside world; everything named outlives the delegate.
    struct Environment {
        AwakeController::Environment controller;
        platform::Application& application;
        platform::MenuBar& menuBar;
        platform::StatusBar& statusBar;
        platform::LoginItem& loginItem;
        platform::Windows& windows;
        platform::Screens& screens;
        platform::Authenticator& authenticator;
        platform::LockGuard& lockGuard;
        platform::Notifications& notifications;
    };

    explicit AppDelegate(Environment environment);

    /// Lets go of the controller, the status item, the main window and, last of all, the privacy
    /// windows.
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    void applicationDidFinishLaunching();

    /// Releases what the session holds; no reaction of the delegate runs any more.
    void applicationWillTerminate();

    /// The program was started again: shows the main window unless a window is visible. Always
    /// true.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

    /// What a dock is to show for the program now.
    platform::Menu applicationDockMenu() const;

    /// Does what the name of a menu's action says: that of one of the functions from showWindow
    /// to toggleLaunchAtLogin. Any other name does nothing.
    void performAction(std::string_view name);

    void showWindow();
    void showAbout();
    void quitApp();

    /// Starts a session until stopped with the screen left visible, or ends the running one.
    void toggleProtection();

    void agentLock();
    void appleLock();
    void openLockSettings();

    /// Switches the start at login, or opens the settings where the user has to approve it.
    void toggleLaunchAtLogin();

    /// Covers every display with the lock screen, anew when it is up already.
    void showAgentLock();

    /// The displays have changed: covers them anew while the lock is up.
    void screenParametersChanged();

    /// Asks who is there, and uncovers the displays when it is the owner. The session goes on.
    void authenticateAndUnlock();

    const std::shared_ptr<AwakeController>& controller() const { return controller_; }

private:
    void makeMainWindow();
    void makeStatusItem();
    void bindCallbacks();
    void rebuildMenu();
    void rebuildMainMenu();
    platform::MenuRequests menuRequests(void (AppDelegate::*rebuild)());
    std::function<void()> weakly(void (AppDelegate::*action)());
    platform::Window& window();
    std::unique_ptr<PrivacyWindow> makePrivacyWindow(const platform::Screen& screen);
    void closeWindow();
    void closePrivacyWindows();
    void giveWayToSystemLock();
    void dismissGuard();
    void uncover();
    void discard(std::vector<std::unique_ptr<PrivacyWindow>> windows);

    Environment environment_;
    std::shared_ptr<AwakeController> controller_;
    std::unique_ptr<platform::StatusItem> statusItem_;
    std::unique_ptr<VigiloView> view_;
    std::unique_ptr<platform::Window> window_;
    std::vector<std::unique_ptr<PrivacyWindow>>
        privacyWindows_; ///< the lock is up while there are any
};

} // namespace vigilo
