#pragma once

#include "helpers/lock/LimitedBus.h"

namespace vigilo {

/// The system's own lock of this login session: logind passes the request on to whatever locks the
/// screen here, and GNOME's screen saver is asked beside it. Every failure is silent. A bus that
/// does not greet us within a second is done without, and no question waits for longer. After one
/// in vain the others to logind have a tenth of a second each, and the session's bus is asked no
/// more.
class SessionLock {
public:
    SessionLock();
    ~SessionLock();
    SessionLock(const SessionLock&) = delete;
    SessionLock& operator=(const SessionLock&) = delete;

    /// Asks for the lock. Returns whether somebody may have heard it who is yet to take the lock;
    /// where nobody has, there is nothing to wait for.
    bool request();

    /// Whether something that locks the screen has taken it, or is there to take it: logind was
    /// told that the session is locked, or a screen saver is on the session's bus.
    bool isTaken();

    /// Mutter's switch for all displays; does nothing elsewhere.
    void sleepMutterDisplays();

private:
    bool isOwned(const char* name);

    LimitedBus system_;
    LimitedBus session_; ///< from the request on
};

} // namespace vigilo
