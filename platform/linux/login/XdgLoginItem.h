#pragma once

#include "platform/LoginItem.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vigilo::platform {

/// What the autostart folders and the desktop are found by.
struct AutostartEnvironment {
    std::filesystem::path configHome = {}; ///< the user's; empty when it is not known
    std::vector<std::filesystem::path> configFolders = {}; ///< the system's, an earlier one first
    std::string currentDesktop = {};                       ///< in the form of XDG_CURRENT_DESKTOP
    std::string searchPath = {};                           ///< in the form of PATH
    std::string program = {};                              ///< the running program, absolute
};

/// This process's own, as the XDG Base Directory Specification has it. Ask at the start: a program
/// that is replaced later by a newer one no longer knows its own path.
AutostartEnvironment autostartEnvironment();

/// An entry of ours in the user's autostart folder (Desktop Application Autostart Specification),
/// which every session manager reads and every desktop's startup settings show.
class XdgLoginItem : public LoginItem {
public:
    explicit XdgLoginItem(AutostartEnvironment environment);

    LoginItemStatus status() const override;
    std::optional<std::string> registerItem() override;
    std::optional<std::string> unregisterItem() override;
    void openSettings() override;

private:
    std::optional<std::filesystem::path> systemEntry() const;
    std::optional<std::filesystem::path> effectiveEntry() const;
    bool isExecutable(const std::string& program) const;

    AutostartEnvironment environment_;
    std::filesystem::path userEntry_; ///< where ours is; empty when there is no place for it
};

} // namespace vigilo::platform
