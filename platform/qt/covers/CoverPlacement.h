#pragma once

#include <memory>

class QQuickView;
class QScreen;
class QWindow;

namespace vigilo::platform {

class LeavingWindows;

/// How a window comes to cover a display on the running kind of display server, and stays there.
class CoverPlacement {
public:
    virtual ~CoverPlacement() = default;

    /// Shows the window over the whole display.
    virtual void show() = 0;

    /// Gives it the keyboard, and again whenever it is lost.
    virtual void takeKeyboard() = 0;
};

/// The placement that fits; the view, not shown yet, and the rest outlive it. `leaving` gets the
/// windows that stood in for it.
std::unique_ptr<CoverPlacement> makeCoverPlacement(QQuickView& view, QScreen& screen,
                                                   LeavingWindows& leaving);

/// Says of a window that it covers a display, or is the ground of one that does.
void markAsCover(QWindow& window);

/// Whether the window is on the display and marked so; none is no cover.
bool isCover(const QWindow* window);

} // namespace vigilo::platform
