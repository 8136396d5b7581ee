#pragma once

#include "platform/LoginItem.h"
#include "platform/linux/login/DesktopEntry.h"

#include <functional>
#include <string>
#include <string_view>

namespace vigilo::platform {

/// What an entry in an autostart folder makes of the program's start. `currentDesktop` has the form
/// of XDG_CURRENT_DESKTOP; `isExecutable` tells whether a program, named by its path or as the
/// search path finds it, can be started.
LoginItemStatus autostartStatus(const DesktopEntry& entry, std::string_view currentDesktop,
                                const std::function<bool(const std::string&)>& isExecutable);

/// The file that starts a program, named by its absolute path, with the session.
std::string autostartFile(std::string_view program);

/// The file that stands before one of the same name in the system's folders and takes the start
/// back. It counts as not registered, since it was written here and not in the desktop's settings.
std::string switchedOffFile();

} // namespace vigilo::platform
