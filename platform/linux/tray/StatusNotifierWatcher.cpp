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

QDBusPendingCall StatusNotifierWatcher::askForHost(const QDBusConnection& bus) {
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcherName, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    question << watcherName << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    return bus.asyncCall(question);
}

bool StatusNotifierWatcher::isHosted(const QDBusPendingCall& question) {
    if (!question.isFinished()) {
        return false;
    }
    const QDBusPendingReply<QDBusVariant> answer = question;
    return answer.isValid() && answer.value().variant().toBool();
}

StatusNotifierWatcher::StatusNotifierWatcher(QDBusConnection bus, bool isHostKnown,
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
    if (isHostKnown) {
        registerItem();
    } else {
        look();
    }
}

void StatusNotifierWatcher::ownerChanged(bool isOwned) {
    ++generation_;
    if (isOwned) {
        look();
    } else {
        report(false);
    }
}

void StatusNotifierWatcher::hostRegistered() {
    registerItem();
}

void StatusNotifierWatcher::hostUnregistered() {
    // There may be others.
    look();
}

/// There may be a watcher without a panel yet; it tells when one comes.
void StatusNotifierWatcher::look() {
    auto* const answer = new QDBusPendingCallWatcher(askForHost(bus_), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, generation = generation_, answer] {
                answer->deleteLater();
                if (generation != generation_) {
                    return;
                }
                if (isHosted(*answer)) {
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
