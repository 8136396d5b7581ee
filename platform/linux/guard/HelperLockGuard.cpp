#include "platform/linux/guard/HelperLockGuard.h"

#include <csignal>
#include <utility>

#include <sys/socket.h>
#include <sys/wait.h>

namespace vigilo::platform {

HelperLockGuard::~HelperLockGuard() {
    HelperLockGuard::lower();
}

void HelperLockGuard::raise() {
    if (!guard_.socket) {
        start();
    }
}

void HelperLockGuard::start() {
    guard_ = startHelper("vigilo-guard");
    if (guard_.pid <= 0) {
        guard_ = {}; // none to be had; the cover itself still stands
        return;
    }
    // The guard says nothing: its connection becomes readable only by its death.
    death_ = std::make_unique<QSocketNotifier>(guard_.socket.number(), QSocketNotifier::Read);
    QObject::connect(death_.get(), &QSocketNotifier::activated, death_.get(), [this] {
        death_.release()->deleteLater();
        reap();
        start();
    });
}

void HelperLockGuard::lower() {
    if (!guard_.socket) {
        return;
    }
    death_.reset();
    const char allIsWell = 0;
    send(guard_.socket.number(), &allIsWell, 1, MSG_NOSIGNAL);
    reap();
}

void HelperLockGuard::reap() {
    const pid_t pid = guard_.pid;
    guard_ = {};
    if (pid > 0) {
        waitpid(pid, nullptr, 0);
    }
}

} // namespace vigilo::platform
