#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace vigilo::platform {

/// Reads the beginning of command lines from /proc into one buffer that is used again and again:
/// 4 KiB, and up to 16 KiB only while the words that tell an agent are not complete.
class CommandLineReader {
public:
    /// The arguments joined by blanks, without an unfinished last word; empty for a kernel thread,
    /// a zombie and what cannot be read. Valid until the next call. `path` is relative to
    /// `directory`, as for openat(2).
    std::string_view read(int directory, const char* path);

private:
    std::array<char, std::size_t{16} * 1024> buffer_;
};

} // namespace vigilo::platform
