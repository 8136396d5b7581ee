#include "platform/linux/bus/SessionBus.h"

#include "platform/linux/bus/BusProbe.h"

#include <algorithm>
#include <utility>

#include <QUuid>

namespace vigilo::platform {

namespace {
using namespace std::chrono_literals;
constexpr auto answerLimit = 2s;
constexpr std::chrono::milliseconds firstPause = 250ms;
constexpr std::chrono::milliseconds longestPause = 30000ms;
} // namespace

SessionBus::SessionBus(RunLoop& runLoop)
    : runLoop_(runLoop), connection_(QDBusConnection::sessionBus()), pause_(firstPause) {
    if (connection_.isConnected()) {
        watch();
    }
}

SessionBus::~SessionBus() {
    if (!name_.isEmpty()) {
        QDBusConnection::disconnectFromBus(name_);
    }
}

void SessionBus::watch() {
    // The library's own signal for the end of a connection.
    connection_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"),
                        QStringLiteral("Disconnected"), this, SLOT(disconnected()));
}

void SessionBus::disconnected() {
    if (std::exchange(isLooking_, true)) {
        return;
    }
    Q_EMIT changed();
    pause_ = firstPause;
    lookLater();
}

void SessionBus::lookLater() {
    runLoop_.runAfter(pause_, [weak = std::weak_ptr(self_)] {
        if (const auto self = weak.lock()) {
            (*self)->look();
        }
    });
    pause_ = std::min(pause_ * 2, longestPause);
}

/// In the background, since a bus that hangs holds up whoever asks it.
void SessionBus::look() {
    runLoop_.runInBackground([weak = std::weak_ptr(self_), runLoop = &runLoop_] {
        QString name;
        if (busState(MessageBus::session, answerLimit) == BusState::answers) {
            name = QUuid::createUuid().toString();
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
        }
        runLoop->post([weak, name] {
            if (const auto self = weak.lock()) {
                (*self)->take(name);
            } else if (!name.isEmpty()) {
                QDBusConnection::disconnectFromBus(name);
            }
        });
    });
}

void SessionBus::take(const QString& name) {
    QDBusConnection found(name);
    if (!found.isConnected()) {
        if (!name.isEmpty()) {
            QDBusConnection::disconnectFromBus(name);
        }
        lookLater();
        return;
    }
    connection_ = std::move(found);
    const QString before = std::exchange(name_, name);
    if (!before.isEmpty()) {
        QDBusConnection::disconnectFromBus(before);
    }
    isLooking_ = false;
    watch();
    if (connection_.isConnected()) {
        Q_EMIT changed();
    } else {
        disconnected();
    }
}

} // namespace vigilo::platform
