#pragma once

#include <chrono>

namespace vigilo::platform {

enum class MessageBus { session, system };

/// How a message bus stands.
enum class BusState {
    absent,  ///< there is none
    answers, ///< it greets whoever comes
    hangs    ///< it takes the connection, or cannot even do that, and says nothing
};

/// Asks it, and waits for the limit at most. For the toolkit to connect there is no such limit, and
/// no other connection of its kind is opened or closed meanwhile. Any thread.
BusState busState(MessageBus bus, std::chrono::milliseconds limit);

/// Does without the session bus, in this process and its children, when it hangs: the libraries
/// would wait for it for ever, and no window would come. Waits for five seconds at most, since a
/// bus that is only slow is given up for good. Before any of them looks for the bus. Main thread,
/// as the only one.
void leaveHungSessionBus();

} // namespace vigilo::platform
