#include "helpers/lock/OwnProcesses.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace vigilo {

bool isOneOfOursRunning(const std::vector<std::string_view>& names) {
    constexpr std::size_t longestName = 15; // proc(5), comm
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/proc", error), end; !error && entry != end;
         entry.increment(error)) {
        struct stat status {};
        if (stat(entry->path().c_str(), &status) != 0 || status.st_uid != getuid()) {
            continue;
        }
        std::ifstream file(entry->path() / "comm");
        std::string name;
        if (std::getline(file, name) && std::any_of(names.begin(), names.end(), [&](auto wanted) {
                return wanted.substr(0, longestName) == name;
            })) {
            return true;
        }
    }
    return false;
}

} // namespace vigilo
