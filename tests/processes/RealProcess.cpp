#include "tests/processes/RealProcess.h"

#include <array>
#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vigilo {

namespace {

/// The kernel shows a new program without its arguments for a moment.
void waitForArguments(pid_t pid) {
    const std::string path = "/proc/" + std::to_string(pid) + "/cmdline";
    siginfo_t info{};
    while (std::ifstream(path).get() == std::ifstream::traits_type::eof()) {
        // One that has ended has none any more.
        if (waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
            info.si_pid != 0) {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

} // namespace

RealProcess::RealProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& folder) {
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    // Closed by a successful exec, so that the test goes on only when the program runs.
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    pid_ = fork();
    if (pid_ == 0) {
        if (chdir(folder.c_str()) == 0) {
            execv(program.c_str(), argv.data());
        }
        [[maybe_unused]] const ssize_t written = write(ends[1], "x", 1);
        _exit(127);
    }
    close(ends[1]);
    char failure = 0;
    const bool failed = read(ends[0], &failure, 1) != 0;
    close(ends[0]);
    if (pid_ < 0 || failed) {
        throw std::runtime_error("cannot start " + program);
    }
    waitForArguments(pid_);
}

RealProcess::RealProcess(RealProcess&& other) noexcept : pid_(std::exchange(other.pid_, -1)) {}

RealProcess::~RealProcess() {
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
}

std::size_t RealProcess::childCount() const {
    const std::string process = std::to_string(pid_);
    std::ifstream children("/proc/" + process + "/task/" + process + "/children");
    return static_cast<std::size_t>(std::distance(std::istream_iterator<pid_t>(children), {}));
}

void RealProcess::becomeZombie() const {
    kill(pid_, SIGKILL);
    siginfo_t info{};
    waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOWAIT);
}

} // namespace vigilo
