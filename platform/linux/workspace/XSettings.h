#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <variant>

namespace vigilo::platform {

/// The settings that a daemon of an X11 desktop hands out (XSETTINGS): numbers and texts by their
/// names, such as "Net/ThemeName". Names and texts refer into the bytes they were read from.
using XSettings = std::map<std::string_view, std::variant<std::int32_t, std::string_view>>;

/// What the property _XSETTINGS_SETTINGS holds. Colours are left out, and so is all that follows
/// something that cannot be read. Any bytes, any thread.
XSettings parseXSettings(std::string_view bytes);

} // namespace vigilo::platform
