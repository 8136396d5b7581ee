#pragma once

#include "platform/linux/FileDescriptor.h"

#include <string>
#include <string_view>

#include <sys/types.h>

namespace vigilo::platform {

/// The absolute path of one of our helper programs, which stand in ../libexec/vigilo beside the
/// running program's folder. It may not exist.
std::string helperPath(std::string_view name);

/// A helper that runs, and our end of its connection.
struct StartedHelper {
    pid_t pid = -1; ///< to be waited for by whoever started it; -1 when it could not be started
    FileDescriptor socket;
};

/// Starts a helper with a connection on its descriptor 3 and, unless it is empty, one argument. One
/// that cannot be started leaves a connection whose other end is closed or, where there are no
/// descriptors left, none at all.
StartedHelper startHelper(std::string_view name, const std::string& argument = {});

} // namespace vigilo::platform
