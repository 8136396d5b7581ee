#include "platform/linux/processes/ChildProcess.h"

#include "platform/linux/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <cstddef>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vigilo::platform {

namespace {

/// The set-up of a child's descriptors: null device in and error out, a pipe out.
class ChildFiles {
public:
    explicit ChildFiles(int output) {
        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    ~ChildFiles() { posix_spawn_file_actions_destroy(&actions_); }
    ChildFiles(const ChildFiles&) = delete;
    ChildFiles& operator=(const ChildFiles&) = delete;

    const posix_spawn_file_actions_t* actions() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

std::string readToEnd(int descriptor) {
    std::string text;
    std::array<char, 65536> buffer;
    while (true) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return text;
        }
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

} // namespace

std::optional<std::string> outputOf(const std::string& executable,
                                    const std::vector<std::string>& arguments) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    const FileDescriptor readEnd(ends[0]);
    FileDescriptor writeEnd(ends[1]);

    std::vector<char*> argv{const_cast<char*>(executable.c_str())};
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    pid_t child = -1;
    const ChildFiles files(writeEnd.number());
    if (posix_spawn(&child, executable.c_str(), files.actions(), nullptr, argv.data(), environ) !=
        0) {
        return std::nullopt;
    }
    writeEnd = FileDescriptor();
    std::string output = readToEnd(readEnd.number());
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    return output;
}

} // namespace vigilo::platform
