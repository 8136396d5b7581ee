#pragma once

#include <cstdint>
#include <string_view>

namespace vigilo::platform {

/// The status of a power request that no bus could carry (ENOTCONN).
inline constexpr std::int32_t noBusStatus = 107;

/// The status, an errno value, for a D-Bus error of this name; 5 (EIO) for one not known.
std::int32_t powerStatus(std::string_view errorName);

} // namespace vigilo::platform
