#pragma once

namespace vigilo::platform {

/// The running program as the desktop knows it.
class Application {
public:
    virtual ~Application() = default;

    /// Uses the installed icon named `Vigilo`; keeps the default one when it cannot be found.
    virtual void loadIcon() = 0;

    /// Brings the program's windows in front of other programs, as far as the desktop allows.
    virtual void activateIgnoringOtherApps() = 0;

    /// Whether the user has a window of the program before them, a cover included.
    virtual bool hasVisibleWindows() const = 0;

    /// Shows the program's name, version and origin in the platform's usual way.
    virtual void orderFrontStandardAboutPanel() = 0;

    /// Asks the event loop to end; the program then terminates in its usual order.
    virtual void terminate() = 0;
};

} // namespace vigilo::platform
