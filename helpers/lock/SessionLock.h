#pragma once

#include <memory>

struct sd_bus;

namespace vigilo {

/// The system's own lock of this login session: logind passes the request on to whatever locks the
/// screen here, and GNOME's screen saver is asked beside it. Every failure is silent; no question
/// waits for longer than a second, and a bus that does not greet us within one is done without.
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
    struct Close {
        void operator()(sd_bus* bus) const;
    };
    using Bus = std::unique_ptr<sd_bus, Close>;

    static Bus open(int (*opener)(sd_bus** bus));
    bool isOwned(const char* name);

    Bus system_;
    Bus session_; ///< from the request on
};

} // namespace vigilo
