#pragma once

#include <deque>
#include <memory>

#include <QObject>

namespace vigilo::platform {

class ContentView;

/// Destroys windows that have left the display when the toolkit is done with them, see
/// leaveDisplay(). Main thread.
class LeavingWindows : public QObject {
public:
    LeavingWindows();

    /// Gives the toolkit a moment for those that left last.
    ~LeavingWindows() override;

    /// Destroys the content of the window now, the window and what is held for it in a moment.
    void take(std::unique_ptr<ContentView> window, std::shared_ptr<void> held);

private:
    struct Leaving {
        std::shared_ptr<void> held; ///< lives longer than the window
        std::unique_ptr<ContentView> window;
    };

    std::deque<Leaving> windows_; ///< in the order in which they came
};

} // namespace vigilo::platform
