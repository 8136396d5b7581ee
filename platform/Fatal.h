#pragma once

#include <string_view>

namespace vigilo {

/// Stops the process after a broken invariant, in every build type: writes `message` as one line on
/// standard error and aborts. For programming errors only, never for bad input. Any thread.
[[noreturn]] void fatal(std::string_view message);

} // namespace vigilo
