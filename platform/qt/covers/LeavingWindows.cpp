#include "platform/qt/covers/LeavingWindows.h"

#include "platform/qt/covers/Leaving.h"

#include <chrono>
#include <iterator>
#include <thread>
#include <utility>

#include <QTimer>

namespace vigilo::platform {

namespace {
using namespace std::chrono_literals;
// The toolkit's thread was never seen that late; and by then the windows below are drawn anew, for
// which they may need descriptors that are held.
constexpr auto delay = 500ms;
} // namespace

LeavingWindows::LeavingWindows() = default;

LeavingWindows::~LeavingWindows() {
    bool isAnyLeft = false;
    for (const Leaving& leaving : windows_) {
        if (leaving.window) {
            unmap(*leaving.window);
            isAnyLeft = true;
        }
    }
    if (isAnyLeft) {
        std::this_thread::sleep_for(delay);
    }
}

void LeavingWindows::take(std::unique_ptr<QWindow> window, std::shared_ptr<void> held) {
    if (window->handle() == nullptr) {
        window.reset(); // the toolkit has nothing that it could use
    }
    windows_.push_back({.held = std::move(held), .window = std::move(window)});
    destroySoon(std::prev(windows_.end()));
}

void LeavingWindows::destroySoon(std::list<Leaving>::iterator leaving) {
    QTimer::singleShot(delay, this, [this, leaving] {
        if (leaving->window && leaving->window->isVisible()) {
            destroySoon(leaving); // its last picture is still on its way
        } else {
            windows_.erase(leaving);
        }
    });
}

} // namespace vigilo::platform
