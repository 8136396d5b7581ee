// Puts the displays to sleep behind the system's own lock, and ends. Where nothing takes the lock,
// it becomes a screen locker itself, so that sleeping displays never wake to an open desktop.
// With "--after-death" it also puts back what the program changed in the desktop and left so.
#include "helpers/lock/DesktopEffects.h"
#include "helpers/lock/DisplaySleep.h"
#include "helpers/lock/Lockers.h"
#include "helpers/lock/OwnProcesses.h"
#include "helpers/lock/SessionLock.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace vigilo;
using namespace std::chrono_literals;

// By then a desktop that locks has said so.
constexpr auto lockLimit = 2000ms;
constexpr auto lockPause = 100ms;

bool isSet(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

/// The path of a program on PATH; empty when it is not there.
std::string installedPath(std::string_view program) {
    const char* const path = std::getenv("PATH");
    std::string_view rest = path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin";
    while (!rest.empty()) {
        const std::string_view folder = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
        std::string candidate = std::string(folder) + "/" + std::string(program);
        if (folder.starts_with('/') && access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
    }
    return {};
}

/// Whether XScreenSaver runs here. It owns the bus name of a screen saver, but is no more to be
/// asked over the bus than through logind.
bool isXScreenSaverRunning(DisplayServer server) {
    return server == DisplayServer::x11 && isOneOfOursRunning({xScreenSaver.program});
}

void lockXScreenSaver() {
    std::string command(xScreenSaver.command);
    std::string argument(xScreenSaver.argument);
    const std::array arguments{command.data(), argument.data(), static_cast<char*>(nullptr)};
    pid_t child = 0;
    if (posix_spawnp(&child, command.c_str(), nullptr, nullptr, arguments.data(), environ) == 0) {
        waitpid(child, nullptr, 0);
    }
}

bool isTakenWithin(std::chrono::milliseconds limit, SessionLock& session, DisplayServer server) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (true) {
        // A locker that logind's request has started says so to nobody.
        if (session.isTaken() || isXScreenSaverRunning(server) ||
            isOneOfOursRunning(lockers(server))) {
            return true;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(lockPause);
    }
}

} // namespace

int main(int argc, char* argv[]) {
    if (!isSet("WAYLAND_DISPLAY") && !isSet("DISPLAY")) {
        return EXIT_FAILURE;
    }
    const DisplayServer server =
        isSet("WAYLAND_DISPLAY") ? DisplayServer::wayland : DisplayServer::x11;
    {
        SessionLock session;
        const bool mayBeTaken = session.request();
        if (isXScreenSaverRunning(server)) {
            lockXScreenSaver();
        }
        sleepDisplays(session);
        const bool isTaken = isTakenWithin(mayBeTaken ? lockLimit : 0ms, session, server);
        if (argc > 1 && std::string_view(argv[1]) == "--after-death") {
            restoreDesktopEffects();
        }
        if (isTaken) {
            return EXIT_SUCCESS;
        }
    }
    const std::string locker = installedLocker(server, installedPath);
    if (locker.empty()) {
        return EXIT_FAILURE;
    }
    execl(locker.c_str(), locker.c_str(), nullptr);
    return EXIT_FAILURE;
}
