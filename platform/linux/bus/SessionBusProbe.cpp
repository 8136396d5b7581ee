#include "platform/linux/bus/SessionBusProbe.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include <systemd/sd-bus.h>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto answerLimit = 2s;

struct Close {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};

} // namespace

SessionBusState sessionBusState() {
    sd_bus* opened = nullptr;
    if (sd_bus_open_user(&opened) < 0) {
        return SessionBusState::absent;
    }
    const std::unique_ptr<sd_bus, Close> bus(opened);
    const auto deadline = Clock::now() + answerLimit;
    int isReady = 0;
    while ((isReady = sd_bus_is_ready(bus.get())) == 0) {
        const int processed = sd_bus_process(bus.get(), nullptr);
        if (processed < 0) {
            return SessionBusState::absent;
        }
        if (processed > 0) {
            continue;
        }
        // Only after a look at what has come: it may have been ourselves who were held up.
        const auto left =
            std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
        if (left.count() <= 0) {
            return SessionBusState::hangs;
        }
        if (sd_bus_wait(bus.get(), static_cast<std::uint64_t>(left.count())) < 0) {
            return SessionBusState::absent;
        }
    }
    return isReady > 0 ? SessionBusState::answers : SessionBusState::absent;
}

void leaveHungSessionBus() {
    if (sessionBusState() == SessionBusState::hangs) {
        // An address that no library knows a transport for.
        setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    }
}

} // namespace vigilo::platform
