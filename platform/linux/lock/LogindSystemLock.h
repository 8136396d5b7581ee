#pragma once

#include "platform/SystemLock.h"

namespace vigilo::platform {

/// Has logind ask the desktop to lock our session.
class LogindSystemLock : public SystemLock {
public:
    void sleepDisplays() override;
};

} // namespace vigilo::platform
