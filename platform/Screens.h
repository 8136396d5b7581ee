#pragma once

#include <functional>
#include <string>
#include <vector>

namespace vigilo::platform {

/// A rectangle of the desktop, in points.
struct Frame {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const Frame&) const = default;
};

/// One attached display.
struct Screen {
    std::string name; ///< as the system calls its connector; unique among those attached
    Frame frame;      ///< the whole display, panels included

    bool operator==(const Screen&) const = default;
};

/// The attached displays. Main thread.
class Screens {
public:
    virtual ~Screens() = default;

    /// In the system's order, the primary one first.
    virtual std::vector<Screen> screens() const = 0;

    /// Called when a display was added, removed, moved or resized; empty to stop. Not called when
    /// the last display goes: nothing is left to react on, and what stood on it is wanted again
    /// when one returns.
    virtual void observe(std::function<void()> onChange) = 0;
};

} // namespace vigilo::platform
