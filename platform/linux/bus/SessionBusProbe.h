#pragma once

namespace vigilo::platform {

/// How the session bus stands.
enum class SessionBusState {
    absent,  ///< there is none
    answers, ///< it greets whoever comes
    hangs    ///< it takes the connection but has said nothing for two seconds
};

/// Asks it, and waits for two seconds at most. Any thread.
SessionBusState sessionBusState();

/// Does without the session bus, in this process and its children, when it hangs: the libraries
/// would wait for it for ever, and no window would come. Before any of them looks for the bus. Main
/// thread, as the only one.
void leaveHungSessionBus();

} // namespace vigilo::platform
