#include "platform/linux/bus/BusProbe.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include <systemd/sd-bus.h>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto startLimit = 5s;

struct Close {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};

} // namespace

BusState busState(MessageBus bus, std::chrono::milliseconds limit) {
    sd_bus* opened = nullptr;
    const int status =
        bus == MessageBus::session ? sd_bus_open_user(&opened) : sd_bus_open_system(&opened);
    if (status < 0) {
        // So many wait for it already that no more may.
        return status == -EAGAIN ? BusState::hangs : BusState::absent;
    }
    const std::unique_ptr<sd_bus, Close> connection(opened);
    const auto deadline = Clock::now() + limit;
    int isReady = 0;
    while ((isReady = sd_bus_is_ready(connection.get())) == 0) {
        const int processed = sd_bus_process(connection.get(), nullptr);
        if (processed < 0) {
            return BusState::absent;
        }
        if (processed > 0) {
            continue;
        }
        // Only after a look at what has come: it may have been ourselves who were held up.
        const auto left =
            std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
        if (left.count() <= 0) {
            return BusState::hangs;
        }
        if (sd_bus_wait(connection.get(), static_cast<std::uint64_t>(left.count())) < 0) {
            return BusState::absent;
        }
    }
    return isReady > 0 ? BusState::answers : BusState::absent;
}

void leaveHungSessionBus() {
    if (busState(MessageBus::session, startLimit) == BusState::hangs) {
        // An address that no library knows a transport for.
        setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    }
}

} // namespace vigilo::platform
