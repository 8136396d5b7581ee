#pragma once

namespace vigilo::platform {

/// Puts the system's own lock in place should the program die while it covers the screen. Main
/// thread.
class LockGuard {
public:
    virtual ~LockGuard() = default;

    /// The screen is covered from now on. Repeating the call does nothing.
    virtual void raise() = 0;

    /// The cover has come down as it should, or the program is about to end as it should.
    virtual void lower() = 0;
};

} // namespace vigilo::platform
