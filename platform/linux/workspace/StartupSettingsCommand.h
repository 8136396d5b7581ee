#pragma once

#include "platform/linux/workspace/SettingsCommands.h"

namespace vigilo::platform {

/// The command that opens a desktop's settings of the programs that start with a session, as
/// settingsCommand() finds it. A desktop without such a program gets `folder`, where the entries of
/// those programs are, shown in the file manager.
Command startupSettingsCommand(std::string_view currentDesktop,
                               const std::function<bool(std::string_view)>& isInstalled,
                               const std::string& folder);

} // namespace vigilo::platform
