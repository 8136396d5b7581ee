#pragma once

#include "core/AwakeController.h"
#include "platform/Application.h"
#include "platform/Windows.h"
#include "ui/VigiloView.h"

#include <memory>

namespace vigilo {

/// Owns what lives for the whole run: the controller and the main window; reacts to the
/// controller's callbacks. Main thread only; make it with std::make_shared, since callbacks hold
/// it weakly.
class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
public:
    /// The outside world; everything named outlives the delegate.
    struct Environment {
        AwakeController::Environment controller;
        platform::Application& application;
        platform::Windows& windows;
    };

    explicit AppDelegate(Environment environment);

    void applicationDidFinishLaunching();

    /// Releases what the session holds; no reaction of the delegate runs any more.
    void applicationWillTerminate();

    /// The program was started again: shows the main window unless a window is visible. Always
    /// true.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

    void showWindow();
    void quitApp();

    /// Starts a session until stopped with the screen left visible, or ends the running one.
    void toggleProtection();

    void agentLock();
    void appleLock();
    void openLockSettings();

    const std::shared_ptr<AwakeController>& controller() const { return controller_; }

private:
    void makeMainWindow();
    void bindCallbacks();
    platform::Window& window();

    Environment environment_;
    std::shared_ptr<AwakeController> controller_;
    std::unique_ptr<VigiloView> view_;
    std::unique_ptr<platform::Window> window_;
};

} // namespace vigilo
