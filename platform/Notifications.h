#pragma once

namespace vigilo::platform {

/// The bubbles in which the desktop shows what other programs have to say. Main thread.
class Notifications {
public:
    virtual ~Notifications() = default;

    /// Asks the desktop to show none from now on. Returns at once; a desktop that cannot is left as
    /// it is. Repeating the call does nothing.
    virtual void silence() = 0;

    /// They may show again.
    virtual void resume() = 0;
};

} // namespace vigilo::platform
