#include "platform/linux/workspace/SettingsCommands.h"

#include <algorithm>
#include <cstddef>

namespace vigilo::platform {

Command settingsCommand(std::span<const DesktopCommands> table, std::string_view currentDesktop,
                        const std::function<bool(std::string_view)>& isInstalled) {
    while (!currentDesktop.empty()) {
        const std::size_t length = std::min(currentDesktop.find(':'), currentDesktop.size());
        const std::string_view desktop = currentDesktop.substr(0, length);
        currentDesktop.remove_prefix(std::min(length + 1, currentDesktop.size()));
        for (const DesktopCommands& row : table) {
            if (row.desktop != desktop) {
                continue;
            }
            for (const Command& command : row.commands) {
                if (isInstalled(command.front())) {
                    return command;
                }
            }
        }
    }
    return {};
}

} // namespace vigilo::platform
