#include "platform/qt/covers/UnmanagedWatch.h"

#include "platform/linux/FileDescriptor.h"
#include "platform/qt/XcbReply.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <system_error>
#include <thread>

#include <QSocketNotifier>

#include <sys/eventfd.h>
#include <sys/socket.h>
#include <xcb/xcb.h>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;

// Two programs that both want to be on top must not keep the machine busy.
constexpr auto overtakePause = 2ms;
constexpr auto reconnectPause = 1s;

struct Disconnect {
    void operator()(xcb_connection_t* server) const { xcb_disconnect(server); }
};
using Server = std::unique_ptr<xcb_connection_t, Disconnect>;

/// Whether an unmanaged window came, moved or was restacked.
bool mayOvertake(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7F) {
    case XCB_MAP_NOTIFY:
        return reinterpret_cast<const xcb_map_notify_event_t&>(event).override_redirect != 0;
    case XCB_CONFIGURE_NOTIFY:
        return reinterpret_cast<const xcb_configure_notify_event_t&>(event).override_redirect != 0;
    default:
        return false;
    }
}

/// A window that is never shown. To move it is left to the window manager, which does so when it
/// has dealt with all that happened before.
class Echo {
public:
    Echo(xcb_connection_t* server, xcb_window_t root)
        : server_(server), window_(xcb_generate_id(server)) {
        xcb_create_window(server_, 0, window_, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
    }

    void call() {
        // Only a change is told of.
        place_ = 1 - place_;
        xcb_configure_window(server_, window_, XCB_CONFIG_WINDOW_X, &place_);
        xcb_flush(server_);
    }

    bool isAnswer(const xcb_generic_event_t& event) const {
        return (event.response_type & 0x7F) == XCB_CONFIGURE_NOTIFY &&
               reinterpret_cast<const xcb_configure_notify_event_t&>(event).window == window_;
    }

private:
    xcb_connection_t* server_;
    xcb_window_t window_;
    std::uint32_t place_ = 0;
};

/// Writes to `descriptor` at the beginning, and each time that the window manager has dealt with
/// what unmanaged windows did. Returns when the connection ends.
void follow(xcb_connection_t* server, int descriptor) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
    const std::uint32_t ofChildren = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(server, root, XCB_CW_EVENT_MASK, &ofChildren);
    Echo echo(server, root);
    echo.call();
    bool isAwaited = true;
    bool isDueAgain = false;
    while (const XcbReply<xcb_generic_event_t> event{xcb_wait_for_event(server)}) {
        isDueAgain = isDueAgain || mayOvertake(*event);
        if (echo.isAnswer(*event)) {
            eventfd_write(descriptor, 1);
            std::this_thread::sleep_for(overtakePause);
            isAwaited = false;
        }
        if (isDueAgain && !isAwaited) {
            echo.call();
            isAwaited = true;
            isDueAgain = false;
        }
    }
}

} // namespace

struct UnmanagedWatch::State {
    std::mutex mutex;
    std::condition_variable changed;
    bool isEnding = false;
    xcb_connection_t* server = nullptr;                          ///< while it is listened to
    FileDescriptor told{eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)}; ///< perhaps none to be had
};

std::shared_ptr<UnmanagedWatch> UnmanagedWatch::begin() {
    static std::weak_ptr<UnmanagedWatch> inUse;
    if (auto watch = inUse.lock()) {
        return watch;
    }
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        return nullptr;
    }
    std::shared_ptr<UnmanagedWatch> watch(new UnmanagedWatch);
    inUse = watch;
    return watch;
}

UnmanagedWatch::UnmanagedWatch() : state_(std::make_shared<State>()) {
    if (!state_->told) {
        return;
    }
    auto* const notifier = new QSocketNotifier(state_->told.number(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        eventfd_t count = 0;
        eventfd_read(state_->told.number(), &count);
        Q_EMIT mayOvertake();
        Q_EMIT wereRaised();
    });
    try {
        std::thread([state = state_] { work(*state); }).detach();
    } catch (const std::system_error&) {
        // The covers hold without it against everything else.
    }
}

/// The thread may be stuck in a server that does not answer; it ends when that does.
UnmanagedWatch::~UnmanagedWatch() {
    const std::lock_guard lock(state_->mutex);
    state_->isEnding = true;
    state_->changed.notify_all();
    if (state_->server != nullptr) {
        shutdown(xcb_get_file_descriptor(state_->server), SHUT_RDWR);
    }
}

void UnmanagedWatch::work(State& state) {
    std::unique_lock lock(state.mutex);
    while (!state.isEnding) {
        lock.unlock();
        const Server server(xcb_connect(nullptr, nullptr));
        lock.lock();
        if (!state.isEnding && xcb_connection_has_error(server.get()) == 0) {
            state.server = server.get();
            lock.unlock();
            follow(server.get(), state.told.number());
            lock.lock();
            state.server = nullptr;
        }
        // The session may start its X server anew.
        state.changed.wait_for(lock, reconnectPause, [&state] { return state.isEnding; });
    }
}

} // namespace vigilo::platform
