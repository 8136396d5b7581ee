#pragma once

namespace vigilo::platform {

/// The desktop's own settings programs.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Opens the settings of the screen lock; does nothing where the desktop has none. Main thread.
    virtual void openLockScreenSettings() = 0;
};

} // namespace vigilo::platform
