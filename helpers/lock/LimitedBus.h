#pragma once

#include <cerrno>
#include <memory>

#include <systemd/sd-bus.h>

namespace vigilo {

struct CloseBus {
    void operator()(sd_bus* bus) const;
};

/// A connection to a bus that may hang.
using LimitedBus = std::unique_ptr<sd_bus, CloseBus>;

/// Opens one by sd_bus_open_user() or its like; none if the bus does not greet us within a second.
LimitedBus openBus(int (*opener)(sd_bus** bus));

/// Has the questions that are yet to come wait for a tenth of a second only.
void limitFurtherQuestions(sd_bus* bus);

/// Calls a function of sd-bus that asks something, and passes its result on. The first question
/// that is not answered within a second is the last one that waits for so long.
template <typename Function, typename... Arguments>
int ask(Function function, sd_bus* bus, Arguments... arguments) {
    const int result = function(bus, arguments...);
    if (result == -ETIMEDOUT) {
        limitFurtherQuestions(bus);
    }
    return result;
}

} // namespace vigilo
