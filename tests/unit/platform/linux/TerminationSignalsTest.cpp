#include "platform/linux/TerminationSignals.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <poll.h>

namespace vigilo::platform {
namespace {

bool isReadable(int descriptor) {
    pollfd entry{.fd = descriptor, .events = POLLIN, .revents = 0};
    return poll(&entry, 1, 0) == 1;
}

TEST(TerminationSignals, makeTheDescriptorReadable) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const TerminationSignals signals;
        EXPECT_FALSE(isReadable(signals.descriptor()));
        raise(signal);
        EXPECT_TRUE(isReadable(signals.descriptor())) << strsignal(signal);
    }
}

TEST(TerminationSignals, survivesAStormOfSignals) {
    const TerminationSignals signals;
    for (int count = 0; count < 100000; ++count) {
        raise(SIGTERM);
    }
    EXPECT_TRUE(isReadable(signals.descriptor()));
}

TEST(TerminationSignals, leaveAnIgnoredSignalIgnored) {
    std::signal(SIGHUP, SIG_IGN);
    {
        const TerminationSignals signals;
        raise(SIGHUP);
        EXPECT_FALSE(isReadable(signals.descriptor()));
    }
    EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST(TerminationSignals, letABlockedSignalThrough) {
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    {
        const TerminationSignals signals;
        raise(SIGTERM);
        EXPECT_TRUE(isReadable(signals.descriptor()));
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST(TerminationSignals, giveTheSignalsBackAtTheirEnd) {
    { const TerminationSignals signals; }
    EXPECT_EQ(std::signal(SIGTERM, SIG_DFL), SIG_DFL);
}

TEST(TerminationSignals, areNotInheritedByChildren) {
    const TerminationSignals signals;
    EXPECT_NE(fcntl(signals.descriptor(), F_GETFD) & FD_CLOEXEC, 0);
}

TEST(TerminationSignalsDeathTest, canBeWatchedOnlyOnceAtATime) {
    const TerminationSignals signals;
    EXPECT_DEATH(TerminationSignals second, "internal error");
}

} // namespace
} // namespace vigilo::platform
