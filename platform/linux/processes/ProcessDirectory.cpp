#include "platform/linux/processes/ProcessDirectory.h"

#include "text/Numbers.h"
#include "text/Words.h"

#include <array>
#include <climits>
#include <cstddef>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vigilo::platform {

namespace {

// Positions counted from the state, which is field 3 of proc(5).
constexpr std::size_t userTicksField = 14 - 3;
constexpr std::size_t systemTicksField = 15 - 3;
constexpr std::size_t startTicksField = 22 - 3;

std::uint64_t ticks(std::string_view text) {
    const auto value = decimalInteger(text);
    return value && *value > 0 ? static_cast<std::uint64_t>(*value) : 0;
}

} // namespace

std::optional<ProcessStat> parseProcessStat(std::string_view text) {
    const std::size_t nameEnd = text.rfind(')');
    if (nameEnd == std::string_view::npos) {
        return std::nullopt;
    }
    ProcessStat stat;
    Words fields(text.substr(nameEnd + 1));
    for (std::size_t position = 0; position <= startTicksField; ++position) {
        const auto field = fields.next();
        if (!field) {
            return std::nullopt;
        }
        if (position == 0) {
            stat.state = field->front();
        } else if (position == userTicksField) {
            stat.userTicks = ticks(*field);
        } else if (position == systemTicksField) {
            stat.systemTicks = ticks(*field);
        } else if (position == startTicksField) {
            stat.startTicks = ticks(*field);
        }
    }
    return stat;
}

std::string elapsedText(std::chrono::seconds elapsed) {
    const long long total = elapsed.count() > 0 ? elapsed.count() : 0;
    const long long days = total / 86400;
    const long long hours = total / 3600 % 24;
    std::array<char, 64> text{};
    if (days > 0) {
        std::snprintf(text.data(), text.size(), "%lld-%02lld:%02lld:%02lld", days, hours,
                      total / 60 % 60, total % 60);
    } else if (hours > 0) {
        std::snprintf(text.data(), text.size(), "%02lld:%02lld:%02lld", hours, total / 60 % 60,
                      total % 60);
    } else {
        std::snprintf(text.data(), text.size(), "%02lld:%02lld", total / 60 % 60, total % 60);
    }
    return text.data();
}

ProcessDirectory::ProcessDirectory(int proc, const char* name)
    : directory_(openat(proc, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW)) {}

std::optional<ProcessStat> ProcessDirectory::stat() const {
    const FileDescriptor file(openat(descriptor(), "stat", O_RDONLY | O_CLOEXEC));
    std::array<char, 2048> buffer{};
    const ssize_t count = file ? read(file.number(), buffer.data(), buffer.size()) : -1;
    if (count <= 0) {
        return std::nullopt;
    }
    return parseProcessStat({buffer.data(), static_cast<std::size_t>(count)});
}

std::optional<std::string> ProcessDirectory::currentDirectory() const {
    std::array<char, PATH_MAX> buffer{};
    const ssize_t count = readlinkat(descriptor(), "cwd", buffer.data(), buffer.size());
    if (count <= 0) {
        return std::nullopt;
    }
    std::string_view path(buffer.data(), static_cast<std::size_t>(count));
    // A folder may really be called so; only one without a name left bears the kernel's mark.
    constexpr std::string_view deletedMark = " (deleted)";
    struct stat folder {};
    if (path.ends_with(deletedMark) && fstatat(descriptor(), "cwd", &folder, 0) == 0 &&
        folder.st_nlink == 0) {
        path.remove_suffix(deletedMark.size());
    }
    // The kernel marks so a folder outside this process's root.
    if (!path.starts_with('/')) {
        return std::nullopt;
    }
    return std::string(path);
}

} // namespace vigilo::platform
