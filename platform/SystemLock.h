#pragma once

namespace vigilo::platform {

/// The system's own screen lock.
class SystemLock {
public:
    virtual ~SystemLock() = default;

    /// Puts the displays to sleep behind the system's lock. Starts the work and returns at once;
    /// every failure is silent. Main thread.
    virtual void sleepDisplays() = 0;
};

} // namespace vigilo::platform
