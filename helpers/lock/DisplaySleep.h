#pragma once

#include "helpers/lock/SessionLock.h"

namespace vigilo {

/// Switches every display of this session off, by whatever the session offers for it; silent where
/// it offers nothing. They come back with the next key or movement of the pointer.
void sleepDisplays(SessionLock& session);

} // namespace vigilo
