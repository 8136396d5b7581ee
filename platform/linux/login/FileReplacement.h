#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace vigilo::platform {

/// Writes a whole file so that at every moment, also after a loss of power, it has either its old
/// content or the new one. A symbolic link stays and what it points to is written. An existing file
/// keeps its mode; a new one has that of the process's umask. Missing folders are made, for the
/// user alone. Anything but a file in its place is left alone and is an error. Blocks until the
/// disk has it.
std::error_code replaceFile(const std::filesystem::path& path, std::string_view content);

} // namespace vigilo::platform
