#pragma once

#include <string>
#include <string_view>

namespace vigilo::platform {

/// The absolute path of one of our helper programs, which stand in ../libexec/vigilo beside the
/// running program's folder. It may not exist.
std::string helperPath(std::string_view name);

} // namespace vigilo::platform
