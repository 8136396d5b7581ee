#pragma once

#include "platform/linux/workspace/SettingsCommands.h"

namespace vigilo::platform {

/// The command that opens the settings of the screen lock on a desktop, as settingsCommand() finds
/// it; empty where the desktop has no such program. `gnomeVersion` is the major version of GNOME's
/// settings, 0 when it is not known.
Command lockSettingsCommand(std::string_view currentDesktop,
                            const std::function<bool(std::string_view)>& isInstalled,
                            int gnomeVersion);

/// The major version in what `gnome-control-center --version` prints; 0 when there is none.
int gnomeVersion(std::string_view text);

} // namespace vigilo::platform
