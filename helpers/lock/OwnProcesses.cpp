#include "helpers/lock/OwnProcesses.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace vigilo {

namespace {

/// The name of a process that runs, as the kernel keeps it. None for one that has ended, though
/// nobody has taken note of that yet: it locks nothing any more.
std::optional<std::string> runningName(const std::filesystem::path& process) {
    std::ifstream file(process / "stat");
    std::string text;
    std::getline(file, text);
    // proc(5): "pid (name) state", where the name may have anything in it.
    const std::size_t begin = text.find('(');
    const std::size_t end = text.rfind(") ");
    if (begin == std::string::npos || end == std::string::npos || end + 2 >= text.size() ||
        text[end + 2] == 'Z' || text[end + 2] == 'X') {
        return std::nullopt;
    }
    return text.substr(begin + 1, end - begin - 1);
}

/// An X display without the number of one of its screens.
std::string_view withoutScreen(std::string_view display) {
    const std::size_t colon = display.rfind(':');
    return colon == std::string_view::npos ? display : display.substr(0, display.find('.', colon));
}

/// Whether a process was started on another display than ours; where it does not say, it was not.
bool isElsewhere(const std::filesystem::path& process) {
    for (const std::string_view variable : {"WAYLAND_DISPLAY", "DISPLAY"}) {
        const char* const ours = std::getenv(std::string(variable).c_str());
        if (ours == nullptr || *ours == '\0') {
            continue;
        }
        std::ifstream file(process / "environ");
        for (std::string entry; std::getline(file, entry, '\0');) {
            const std::string_view theirs = entry;
            const std::size_t size = variable.size();
            if (theirs.size() > size + 1 && theirs.starts_with(variable) && theirs[size] == '=') {
                return withoutScreen(theirs.substr(size + 1)) != withoutScreen(ours);
            }
        }
        return false;
    }
    return false;
}

} // namespace

bool isOneOfOursRunning(const std::vector<std::string_view>& names) {
    constexpr std::size_t longestName = 15; // proc(5), comm
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/proc", error), end; !error && entry != end;
         entry.increment(error)) {
        struct stat status {};
        if (stat(entry->path().c_str(), &status) != 0 || status.st_uid != getuid()) {
            continue;
        }
        const auto name = runningName(entry->path());
        if (name &&
            std::any_of(names.begin(), names.end(),
                        [&](auto wanted) { return wanted.substr(0, longestName) == *name; }) &&
            !isElsewhere(entry->path())) {
            return true;
        }
    }
    return false;
}

} // namespace vigilo
