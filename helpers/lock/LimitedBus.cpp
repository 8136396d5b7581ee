#include "helpers/lock/LimitedBus.h"

#include <chrono>
#include <cstdint>
#include <utility>

namespace vigilo {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

constexpr microseconds callLimit{1'000'000};
constexpr microseconds furtherLimit{100'000};

void limitQuestions(sd_bus* bus, microseconds limit) {
    sd_bus_set_method_call_timeout(bus, static_cast<std::uint64_t>(limit.count()));
}

/// Whether the bus greets us in time. The limit of calls is none for that: the first one would wait
/// for a bus that hangs for a minute and a half.
bool isReady(sd_bus* bus) {
    const auto deadline = Clock::now() + callLimit;
    int ready = 0;
    while ((ready = sd_bus_is_ready(bus)) == 0) {
        const int processed = sd_bus_process(bus, nullptr);
        if (processed < 0) {
            return false;
        }
        const auto left = std::chrono::duration_cast<microseconds>(deadline - Clock::now());
        if (processed == 0 && (left <= microseconds::zero() ||
                               sd_bus_wait(bus, static_cast<std::uint64_t>(left.count())) < 0)) {
            return false;
        }
    }
    return ready > 0;
}

} // namespace

void CloseBus::operator()(sd_bus* bus) const {
    // Without a flush, which would wait for a bus that hangs; calls have sent what they had to say.
    sd_bus_close_unref(bus);
}

LimitedBus openBus(int (*opener)(sd_bus** bus)) {
    sd_bus* opened = nullptr;
    // Connects without waiting: where too many wait for the bus already, it fails at once.
    if (opener(&opened) < 0) {
        return nullptr;
    }
    LimitedBus bus(opened);
    limitQuestions(bus.get(), callLimit);
    return isReady(bus.get()) ? std::move(bus) : nullptr;
}

void limitFurtherQuestions(sd_bus* bus) {
    limitQuestions(bus, furtherLimit);
}

} // namespace vigilo
