#include "platform/qt/LeavingWindows.h"

#include "platform/qt/ContentView.h"
#include "platform/qt/covers/Leaving.h"

#include <chrono>
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

void LeavingWindows::take(std::unique_ptr<ContentView> window, std::shared_ptr<void> held) {
    window->unload();
    if (window->handle() == nullptr) {
        window.reset(); // the toolkit has nothing that it could use
    }
    windows_.push_back({.held = std::move(held), .window = std::move(window)});
    QTimer::singleShot(delay, this, [this] { windows_.pop_front(); });
}

} // namespace vigilo::platform
