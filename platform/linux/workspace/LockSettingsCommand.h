#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vigilo::platform {

/// The command that opens the settings of the screen lock on a desktop: a program's name and its
/// arguments; empty where the desktop has no such program. `currentDesktop` has the form of
/// XDG_CURRENT_DESKTOP, names separated by ":";
/// `isInstalled` tells whether a program can be started.
std::vector<std::string>
lockSettingsCommand(std::string_view currentDesktop,
                    const std::function<bool(std::string_view)>& isInstalled);

} // namespace vigilo::platform
