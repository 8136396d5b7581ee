#include "platform/linux/workspace/SettingsCommands.h"

#include "text/Parts.h"

namespace vigilo::platform {

Command settingsCommand(std::span<const DesktopCommands> table, std::string_view currentDesktop,
                        const std::function<bool(std::string_view)>& isInstalled) {
    for (const std::string_view desktop : parts(currentDesktop, ':')) {
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
