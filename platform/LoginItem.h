#pragma once

#include <optional>
#include <string>

namespace vigilo::platform {

/// How the start of the program with the user's session stands.
enum class LoginItemStatus {
    notRegistered,    ///< nothing starts it
    enabled,          ///< it starts with the session
    requiresApproval, ///< the user has switched it off in the desktop's own startup settings
    notFound          ///< what is registered cannot be read or cannot be started
};

/// The start of this program with the user's session. Main thread.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    /// As it stands now; asked of the system each time.
    virtual LoginItemStatus status() const = 0;

    /// Has the program start with the session from now on. The error as the user is to read it, in
    /// UTF-8; none when it is done.
    virtual std::optional<std::string> registerItem() = 0;

    /// Has it start no more; errors as for registerItem().
    virtual std::optional<std::string> unregisterItem() = 0;

    /// Opens the desktop's own startup settings; does nothing where there are none.
    virtual void openSettings() = 0;
};

} // namespace vigilo::platform
