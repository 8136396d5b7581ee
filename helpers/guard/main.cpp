// Stands by while the program covers the screen, which kills it when all is well. The end of the
// file on descriptor 3 means that the program has died and the desktop lies open: the system's own
// lock is put in place at once.
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace {
constexpr int programSocket = 3;
}

int main() {
    // What ends the program's session or terminal must not end this first.
    setsid();
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        std::signal(signal, SIG_IGN);
    }
    char byte = 0;
    while (read(programSocket, &byte, 1) < 0 && errno == EINTR) {
    }
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        std::signal(signal, SIG_DFL);
    }
    std::error_code error;
    const auto guard = std::filesystem::read_symlink("/proc/self/exe", error);
    // Absolute also where that cannot be known: the working folder is anybody's.
    const auto lock = "/" / guard.parent_path() / "vigilo-lock";
    execl(lock.c_str(), lock.c_str(), "--after-death", nullptr);
    return EXIT_FAILURE;
}
