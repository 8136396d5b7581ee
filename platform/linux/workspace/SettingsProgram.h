#pragma once

#include "platform/linux/workspace/SettingsCommands.h"

namespace vigilo::platform {

/// Whether a program of this name is on the search path.
bool isInstalled(std::string_view program);

/// Starts a program that outlives ours, with nothing to read from and its output thrown away; does
/// nothing when the command is empty or its program is not on the search path.
void startSettings(const Command& command);

} // namespace vigilo::platform
