#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace vigilo {

/// What happens to the screen while an awake session runs.
enum class AwakeMode {
    visible,   ///< the screen stays as it is
    agentLock, ///< a privacy screen covers every display
    appleLock, ///< the system's own lock is engaged
};

/// Every mode, in the order in which menus offer them.
inline constexpr std::array allAwakeModes{AwakeMode::visible, AwakeMode::agentLock,
                                          AwakeMode::appleLock};

/// "visible", "agentLock" or "appleLock".
std::string_view rawValue(AwakeMode mode);

/// The mode with exactly this raw value (case-sensitive, untrimmed); none for any other text.
std::optional<AwakeMode> awakeMode(std::string_view rawValue);

/// The name that users see, e.g. "Agent Lock".
std::string_view title(AwakeMode mode);

/// Name of the symbol that stands for the mode, e.g. "eye.slash.fill".
std::string_view icon(AwakeMode mode);

} // namespace vigilo
