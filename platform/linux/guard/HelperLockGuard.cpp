#include "platform/linux/guard/HelperLockGuard.h"

#include <chrono>
#include <csignal>

#include <sys/wait.h>

namespace vigilo::platform {

namespace {
using namespace std::chrono_literals;
// Between two attempts, so that a guard which cannot live is no burden.
constexpr auto retryPause = 1000ms;
} // namespace

HelperLockGuard::HelperLockGuard() {
    retry_.setSingleShot(true);
    QObject::connect(&retry_, &QTimer::timeout, &retry_, [this] { start(); });
}

HelperLockGuard::~HelperLockGuard() {
    HelperLockGuard::lower();
}

void HelperLockGuard::raise() {
    if (!isRaised_) {
        isRaised_ = true;
        start();
    }
}

void HelperLockGuard::start() {
    sinceStart_.start();
    guard_ = startHelper("vigilo-guard");
    if (guard_.pid <= 0) {
        guard_ = {};
        retry_.start(retryPause); // the cover itself stands meanwhile
        return;
    }
    // The guard says nothing: its connection becomes readable only by its death.
    death_ = std::make_unique<QSocketNotifier>(guard_.socket.number(), QSocketNotifier::Read);
    QObject::connect(death_.get(), &QSocketNotifier::activated, death_.get(), [this] {
        // Its descriptor is closed sooner than it goes, and the number may be the next guard's.
        death_->setEnabled(false);
        death_.release()->deleteLater();
        replace();
    });
}

void HelperLockGuard::replace() {
    end();
    if (sinceStart_.hasExpired(retryPause.count())) {
        start();
    } else {
        retry_.start(retryPause);
    }
}

void HelperLockGuard::lower() {
    isRaised_ = false;
    retry_.stop();
    death_.reset();
    end();
}

/// Killed before the connection closes, it takes the close for nobody's death. No word to it does
/// as well: one that is stopped would not read it, and be waited for for ever.
void HelperLockGuard::end() {
    if (guard_.pid > 0) {
        kill(guard_.pid, SIGKILL);
        waitpid(guard_.pid, nullptr, 0);
    }
    guard_ = {};
}

} // namespace vigilo::platform
