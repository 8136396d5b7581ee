#include "platform/linux/tray/StatusNotifierWatcher.h"

#include <utility>

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLatin1StringView>

namespace vigilo::platform {

namespace {

constexpr QLatin1StringView watcherName("org.kde.StatusNotifierWatcher");
constexpr QLatin1StringView watcherPath("/StatusNotifierWatcher");

} // namespace

StatusNotifierWatcher::StatusNotifierWatcher(QDBusConnection bus,
                                             std::function<void(bool)> onHostedChanged)
    : bus_(std::move(bus)), onHostedChanged_(std::move(onHostedChanged)),
      owner_(watcherName, bus_, QDBusServiceWatcher::WatchForOwnerChange) {
    connect(&owner_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& now) {
                ownerChanged(!now.isEmpty());
            });
    // Of any sender: with a name the library would ask the bus for its owner and wait.
    bus_.connect(QString(), watcherPath, watcherName,
                 QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(hostRegistered()));
    bus_.connect(QString(), watcherPath, watcherName,
                 QStringLiteral("StatusNotifierHostUnregistered"), this, SLOT(hostUnregistered()));
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    question << watcherName;
    auto* const answer = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, generation = generation_, answer] {
                answer->deleteLater();
                const QDBusPendingReply<bool> isOwned = *answer;
                if (generation == generation_) {
                    ownerChanged(isOwned.isValid() && isOwned.value());
                }
            });
}

void StatusNotifierWatcher::ownerChanged(bool isOwned) {
    ++generation_;
    if (isOwned) {
        askForHost();
    } else {
        report(false);
    }
}

void StatusNotifierWatcher::hostRegistered() {
    registerItem();
}

void StatusNotifierWatcher::hostUnregistered() {
    // There may be others.
    askForHost();
}

/// There may be a watcher without a panel yet; it tells when one comes.
void StatusNotifierWatcher::askForHost() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcherName, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    question << watcherName << QStringLiteral("IsStatusNotifierHostRegistered");
    auto* const answer = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, generation = generation_, answer] {
                answer->deleteLater();
                if (generation != generation_) {
                    return;
                }
                const QDBusPendingReply<QDBusVariant> isHosted = *answer;
                if (isHosted.isValid() && isHosted.value().variant().toBool()) {
                    registerItem();
                } else {
                    report(false);
                }
            });
}

void StatusNotifierWatcher::registerItem() {
    QDBusMessage request = QDBusMessage::createMethodCall(
        watcherName, watcherPath, watcherName, QStringLiteral("RegisterStatusNotifierItem"));
    request << bus_.baseService();
    auto* const answer = new QDBusPendingCallWatcher(bus_.asyncCall(request), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, generation = generation_, answer] {
                answer->deleteLater();
                if (generation == generation_) {
                    report(!answer->isError());
                }
            });
}

void StatusNotifierWatcher::report(bool isHosted) {
    onHostedChanged_(isHosted);
}

} // namespace vigilo::platform
