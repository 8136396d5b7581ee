#include "platform/linux/TerminationSignals.h"

#include "platform/Fatal.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace vigilo::platform {

namespace {

constexpr std::array terminationSignals{SIGTERM, SIGINT, SIGHUP};

// A handler gets no argument of ours, so this one thing has to be reachable without an object.
std::atomic<int> notifiedDescriptor{-1};
static_assert(std::atomic<int>::is_always_lock_free);

void notify(int) {
    const int savedError = errno;
    const char byte = 0;
    // A full pipe already says all there is to say.
    [[maybe_unused]] const ssize_t written = write(notifiedDescriptor.load(), &byte, 1);
    errno = savedError;
}

} // namespace

TerminationSignals::TerminationSignals() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        fatal("no pipe for termination signals");
    }
    readEnd_ = FileDescriptor(ends[0]);
    writeEnd_ = FileDescriptor(ends[1]);
    if (notifiedDescriptor.exchange(writeEnd_.number()) != -1) {
        fatal("termination signals are watched twice");
    }
    sigset_t handled;
    sigemptyset(&handled);
    for (const int signal : terminationSignals) {
        struct sigaction current {};
        sigaction(signal, nullptr, &current);
        if (current.sa_handler == SIG_IGN) {
            continue;
        }
        sigaddset(&handled, signal);
        struct sigaction handling {};
        handling.sa_handler = notify;
        handling.sa_flags = SA_RESTART;
        sigemptyset(&handling.sa_mask);
        sigaction(signal, &handling, nullptr);
    }
    pthread_sigmask(SIG_UNBLOCK, &handled, nullptr);
}

TerminationSignals::~TerminationSignals() {
    for (const int signal : terminationSignals) {
        struct sigaction current {};
        sigaction(signal, nullptr, &current);
        if (current.sa_handler == notify) {
            std::signal(signal, SIG_DFL);
        }
    }
    notifiedDescriptor.store(-1);
}

} // namespace vigilo::platform
