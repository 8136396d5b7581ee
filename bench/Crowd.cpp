#include "bench/Crowd.h"

#include <algorithm>
#include <cctype>
#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <string>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vigilo::bench {

namespace {

std::size_t processCount() {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        count += std::isdigit(static_cast<unsigned char>(name.front())) != 0 ? 1 : 0;
    }
    return count;
}

pid_t start(const char* name) {
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("the machine has no room for so many processes");
    }
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        execl("/usr/bin/sleep", name, "3600", nullptr);
        _exit(127);
    }
    return child;
}

} // namespace

Crowd::Crowd(std::size_t total, std::size_t agents) {
    const std::size_t already = processCount();
    const std::size_t wanted = std::max(total, already + agents) - already;
    for (std::size_t index = 0; index < wanted; ++index) {
        members_.push_back(start(index < agents ? "claude" : "sleep"));
    }
    // Until the last one has become what it is to be.
    usleep(500'000);
}

Crowd::~Crowd() {
    for (const pid_t member : members_) {
        kill(member, SIGKILL);
    }
    for (const pid_t member : members_) {
        waitpid(member, nullptr, 0);
    }
}

} // namespace vigilo::bench
