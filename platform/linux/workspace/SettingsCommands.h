#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vigilo::platform {

/// A program's name and its arguments; empty for none.
using Command = std::vector<std::string>;

/// The commands that open some settings on one desktop.
struct DesktopCommands {
    std::string_view desktop; ///< as XDG_CURRENT_DESKTOP names it
    std::vector<Command> commands;
};

/// The first command of the desktop whose program is installed; empty when there is none.
/// `currentDesktop` has the form of XDG_CURRENT_DESKTOP, names separated by ":", of which an
/// earlier one goes before a later one; `isInstalled` tells whether a program can be started.
Command settingsCommand(std::span<const DesktopCommands> table, std::string_view currentDesktop,
                        const std::function<bool(std::string_view)>& isInstalled);

} // namespace vigilo::platform
