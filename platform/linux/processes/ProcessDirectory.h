#pragma once

#include "platform/linux/FileDescriptor.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vigilo::platform {

/// What /proc/N/stat tells (proc(5)).
struct ProcessStat {
    char state = 0;
    std::uint64_t userTicks = 0;
    std::uint64_t systemTicks = 0;
    std::uint64_t startTicks = 0; ///< since boot
};

/// Reads the text of /proc/N/stat. The second field is a program's name in parentheses and may
/// itself hold blanks and parentheses, so the fields are counted from the last ")".
std::optional<ProcessStat> parseProcessStat(std::string_view text);

/// A running time as [[days-]hours:]minutes:seconds.
std::string elapsedText(std::chrono::seconds elapsed);

/// One process's folder in /proc, opened once: once the process is gone every reading fails, even
/// when its pid has been given to another.
class ProcessDirectory {
public:
    /// `name` is relative to the open folder `proc`.
    ProcessDirectory(int proc, const char* name);

    explicit operator bool() const { return static_cast<bool>(directory_); }
    int descriptor() const { return directory_.number(); }

    std::optional<ProcessStat> stat() const;

    /// Where the process works: an absolute path without the kernel's mark for a folder that has
    /// been deleted. None when it cannot be read.
    std::optional<std::string> currentDirectory() const;

private:
    FileDescriptor directory_;
};

} // namespace vigilo::platform
