#pragma once

#include "platform/SystemLock.h"

namespace vigilo::platform {

/// Leaves locking and the displays to a helper program of its own, which no bus and no display
/// server that hangs can keep us waiting for.
class DesktopSystemLock : public SystemLock {
public:
    void sleepDisplays() override;
};

} // namespace vigilo::platform
