#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vigilo::platform {

/// The command that opens the settings of the screen lock on a desktop: a program's name and its
/// arguments; empty where the desktop has no such program. `currentDesktop` has the form of
/// XDG_CURRENT_DESKTOP, names separated by ":"; `isInstalled` tells whether a program can be
/// started; `gnomeVersion` is the major version of GNOME's settings, 0 when it is not known.
std::vector<std::string>
lockSettingsCommand(std::string_view currentDesktop,
                    const std::function<bool(std::string_view)>& isInstalled, int gnomeVersion);

/// The major version in what `gnome-control-center --version` prints; 0 when there is none.
int gnomeVersion(std::string_view text);

} // namespace vigilo::platform
