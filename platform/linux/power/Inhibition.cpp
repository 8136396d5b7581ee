#include "platform/linux/power/Inhibition.h"

#include <chrono>

#include <QCoreApplication>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QThread>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;

// A service that has not answered by then is stuck; it sees the bus close.
constexpr auto releaseLimit = 2000ms;

} // namespace

CookieInhibition::CookieInhibition(std::shared_ptr<PrivateBus> bus, const QDBusMessage& releaseCall)
    : bus_(std::move(bus)), releaseCall_(releaseCall) {}

CookieInhibition::~CookieInhibition() {
    // The library writes calls on a thread of its own, and a bus that closes forgets those which it
    // has not come to. So this one stays open until the answer.
    constexpr auto limit = static_cast<int>(releaseLimit.count());
    QCoreApplication* const application = QCoreApplication::instance();
    if (QThread::currentThread() != application->thread()) {
        bus_->connection().call(releaseCall_, QDBus::Block, limit);
        return;
    }
    auto answer = std::make_unique<QDBusPendingCallWatcher>(
        bus_->connection().asyncCall(releaseCall_, limit), application);
    QObject::connect(
        answer.get(), &QDBusPendingCallWatcher::finished, answer.get(),
        [bus = std::move(bus_)](QDBusPendingCallWatcher* finished) { finished->deleteLater(); });
    static_cast<void>(answer.release()); // the application has it
}

} // namespace vigilo::platform
