#pragma once

#include "platform/Workspace.h"

namespace vigilo::platform {

/// Starts the settings programs of the desktop that the environment names. Needs the event loop.
class DesktopWorkspace : public Workspace {
public:
    void openLockScreenSettings() override;
};

} // namespace vigilo::platform
