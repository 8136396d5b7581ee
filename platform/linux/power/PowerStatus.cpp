#include "platform/linux/power/PowerStatus.h"

#include <array>
#include <cerrno>

namespace vigilo::platform {

static_assert(noBusStatus == ENOTCONN);

std::int32_t powerStatus(std::string_view errorName) {
    struct Row {
        std::string_view name; ///< without the common prefix
        std::int32_t status;
    };
    constexpr std::string_view prefix = "org.freedesktop.DBus.Error.";
    // Names from the D-Bus standard's list of errors.
    constexpr std::array rows{
        Row{"AccessDenied", EACCES},
        Row{"AuthFailed", EACCES},
        Row{"InteractiveAuthorizationRequired", EACCES},
        Row{"InvalidArgs", EINVAL},
        Row{"InvalidSignature", EINVAL},
        Row{"ServiceUnknown", ENOSYS},
        Row{"NameHasNoOwner", ENOSYS},
        Row{"UnknownMethod", ENOSYS},
        Row{"UnknownInterface", ENOSYS},
        Row{"UnknownObject", ENOSYS},
        Row{"NoServer", ENOTCONN},
        Row{"Disconnected", ENOTCONN},
        Row{"NoReply", ETIMEDOUT},
        Row{"Timeout", ETIMEDOUT},
        Row{"TimedOut", ETIMEDOUT},
        Row{"LimitsExceeded", EAGAIN},
    };
    if (errorName.starts_with(prefix)) {
        errorName.remove_prefix(prefix.size());
        for (const Row& row : rows) {
            if (row.name == errorName) {
                return row.status;
            }
        }
    }
    return EIO;
}

} // namespace vigilo::platform
