#pragma once

#include <list>
#include <memory>

#include <QObject>
#include <QWindow>

namespace vigilo::platform {

/// Destroys windows that have left the display when the toolkit is done with them, see
/// leaveDisplay(). Main thread.
class LeavingWindows : public QObject {
public:
    LeavingWindows();

    /// Gives the toolkit a moment for those that left last.
    ~LeavingWindows() override;

    /// Destroys a window without content and what is held for it, if anything, in a moment.
    void take(std::unique_ptr<QWindow> window, std::shared_ptr<void> held = nullptr);

private:
    struct Leaving {
        std::shared_ptr<void> held; ///< lives longer than the window
        std::unique_ptr<QWindow> window;
    };

    void destroySoon(std::list<Leaving>::iterator leaving);

    std::list<Leaving> windows_;
};

} // namespace vigilo::platform
