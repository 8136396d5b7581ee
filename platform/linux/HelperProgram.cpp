#include "platform/linux/HelperProgram.h"

#include <array>
#include <filesystem>
#include <system_error>

#include <spawn.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vigilo::platform {

namespace {
constexpr int helperSocket = 3; // where the helper expects it
}

std::string helperPath(std::string_view name) {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    // Absolute also where that cannot be known: the working folder is anybody's.
    return ("/" / program.parent_path().parent_path() / "libexec" / "vigilo" / name).string();
}

StartedHelper startHelper(std::string_view name, const std::string& argument) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return {};
    }
    StartedHelper helper{.pid = -1, .socket = FileDescriptor(ends[0])};
    const FileDescriptor theirs(ends[1]);
    const std::string path = helperPath(name);
    const std::array arguments{
        const_cast<char*>(path.c_str()),
        argument.empty() ? nullptr : const_cast<char*>(argument.c_str()),
        static_cast<char*>(nullptr),
    };
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (theirs.number() == helperSocket) {
        // A copy onto itself would stay closed on exec.
        posix_spawn_file_actions_adddup2(&actions, theirs.number(), helperSocket + 1);
        posix_spawn_file_actions_adddup2(&actions, helperSocket + 1, helperSocket);
        posix_spawn_file_actions_addclose(&actions, helperSocket + 1);
    } else {
        posix_spawn_file_actions_adddup2(&actions, theirs.number(), helperSocket);
    }
    if (posix_spawn(&helper.pid, path.c_str(), &actions, nullptr, arguments.data(), environ) != 0) {
        helper.pid = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    return helper;
}

} // namespace vigilo::platform
