#include "platform/linux/compositor/CompositorInterfaces.h"

#include "platform/linux/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <wayland-client.h>

namespace vigilo::platform {

namespace {

using Clock = std::chrono::steady_clock;

struct Destroy {
    void operator()(wl_display* display) const { wl_display_disconnect(display); }
    void operator()(wl_registry* registry) const { wl_registry_destroy(registry); }
    void operator()(wl_callback* callback) const { wl_callback_destroy(callback); }
};

std::string environmentText(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// Where the compositor listens, as wl_display_connect(3) finds it; empty for nowhere.
std::string socketPath() {
    std::string display = environmentText("WAYLAND_DISPLAY");
    if (display.starts_with('/')) {
        return display;
    }
    const std::string folder = environmentText("XDG_RUNTIME_DIR");
    if (folder.empty()) {
        return {};
    }
    return folder + "/" + (display.empty() ? "wayland-0" : display);
}

/// Connects without waiting: a compositor that takes no connections has a full queue of them.
FileDescriptor connectTo(const std::string& path) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    if (path.empty() || path.size() >= sizeof address.sun_path) {
        return {};
    }
    std::copy(path.begin(), path.end(), std::begin(address.sun_path));
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket || connect(socket.number(), reinterpret_cast<const sockaddr*>(&address),
                           sizeof address) != 0) {
        return {};
    }
    return socket;
}

void add(void* data, wl_registry*, std::uint32_t, const char* interface, std::uint32_t) {
    static_cast<std::set<std::string>*>(data)->insert(interface);
}

void remove(void*, wl_registry*, std::uint32_t) {}

void finish(void* data, wl_callback*, std::uint32_t) {
    *static_cast<bool*>(data) = true;
}

constexpr wl_registry_listener registryListener{.global = add, .global_remove = remove};
constexpr wl_callback_listener callbackListener{.done = finish};

/// Sends what is to be sent and takes what has come before the deadline; false when nothing has.
bool exchange(wl_display* display, Clock::time_point deadline) {
    while (wl_display_prepare_read(display) != 0) {
        wl_display_dispatch_pending(display);
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd answer{.fd = wl_display_get_fd(display), .events = POLLIN, .revents = 0};
    if ((wl_display_flush(display) < 0 && errno != EAGAIN) || left <= 0 ||
        (poll(&answer, 1, static_cast<int>(left)) <= 0 && errno != EINTR)) {
        wl_display_cancel_read(display);
        return false;
    }
    return wl_display_read_events(display) == 0 && wl_display_dispatch_pending(display) >= 0;
}

} // namespace

std::set<std::string> compositorInterfaces(std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    if (std::getenv("WAYLAND_SOCKET") != nullptr) {
        return {};
    }
    const FileDescriptor socket = connectTo(socketPath());
    if (!socket) {
        return {};
    }
    // The library closes the descriptor that it is given.
    const std::unique_ptr<wl_display, Destroy> display(
        wl_display_connect_to_fd(fcntl(socket.number(), F_DUPFD_CLOEXEC, 0)));
    if (!display) {
        return {};
    }
    std::set<std::string> interfaces;
    bool isDone = false;
    const std::unique_ptr<wl_registry, Destroy> registry(wl_display_get_registry(display.get()));
    wl_registry_add_listener(registry.get(), &registryListener, &interfaces);
    const std::unique_ptr<wl_callback, Destroy> callback(wl_display_sync(display.get()));
    wl_callback_add_listener(callback.get(), &callbackListener, &isDone);
    while (!isDone) {
        if (!exchange(display.get(), deadline)) {
            return {};
        }
    }
    return interfaces;
}

} // namespace vigilo::platform
