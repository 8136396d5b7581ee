#pragma once

#include "platform/Screens.h"

#include <functional>
#include <memory>
#include <string>

class QObject;

namespace vigilo::platform {

/// A colour in sRGB; components and opacity in 0 to 1.
struct Colour {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    bool operator==(const Colour&) const = default;
};

/// What a window is to be, before it is made.
struct WindowSpec {
    std::string title;        ///< for the task list and the screen reader; drawn nowhere
    int width = 0;            ///< points; the window cannot be resized
    int height = 0;           ///< points
    Colour background;        ///< shown until the content is drawn
    std::string content;      ///< name of the QML type in the module "Vigilo", e.g. "VigiloView"; a
                              ///< part of it in a module below is named "Part/Type"
    QObject* model = nullptr; ///< given to the content as its property `model`; outlives the window
};

/// A top-level window without the system's own frame. Destroying it removes it. Main thread.
class Window {
public:
    virtual ~Window() = default;

    /// Shows the window if it is hidden, restores it if minimised, and gives it the keyboard.
    virtual void makeKeyAndOrderFront() = 0;

    /// Hides the window; it can be shown again.
    virtual void close() = 0;

    virtual bool isVisible() const = 0;
};

/// What a window that covers a display is to be, before it is made.
struct CoverSpec {
    std::string title;        ///< for the screen reader; drawn nowhere
    Screen screen;            ///< covered as a whole, panels and docks included
    Colour background;        ///< opaque; shown until the content is drawn
    std::string content;      ///< as WindowSpec::content
    QObject* model = nullptr; ///< as WindowSpec::model
};

/// A window that hides a display: above every other, on every workspace, closed by nobody else.
/// Destroying it removes it. Main thread.
class Cover {
public:
    virtual ~Cover() = default;

    /// Shows it above everything, whether or not the program is active.
    virtual void orderFrontRegardless() = 0;

    /// Gives it the keyboard and keeps it there.
    virtual void makeKey() = 0;

    /// Removes it from the display at once.
    virtual void close() = 0;
};

/// Makes windows.
class Windows {
public:
    virtual ~Windows() = default;

    /// Makes a hidden window, centred on its screen once shown. `onCloseRequested` is called when
    /// the user or the window manager asks to close it; the window does not close by itself.
    virtual std::unique_ptr<Window> makeWindow(const WindowSpec& windowSpec,
                                               std::function<void()> onCloseRequested) = 0;

    /// Makes a cover that is not shown yet.
    virtual std::unique_ptr<Cover> makeCover(const CoverSpec& coverSpec) = 0;
};

} // namespace vigilo::platform
