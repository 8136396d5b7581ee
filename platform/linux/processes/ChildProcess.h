#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vigilo::platform {

/// Starts the program at an absolute path with these arguments and no shell, reads its standard
/// output to the end and waits for it. Its standard error and standard input are the null device.
/// None when it cannot be started; the exit status is not looked at. Blocks; not for the main
/// thread.
std::optional<std::string> outputOf(const std::string& executable,
                                    const std::vector<std::string>& arguments);

} // namespace vigilo::platform
