#pragma once

#include <string_view>

namespace vigilo {

/// The text after the last "/" of a path, trailing slashes ignored; empty for "/" and "".
std::string_view lastPathComponent(std::string_view path);

} // namespace vigilo
