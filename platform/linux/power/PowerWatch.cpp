#include "platform/linux/power/PowerWatch.h"

#include "platform/linux/power/InhibitMeans.h"

#include <utility>

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

namespace vigilo::platform {

PowerWatch::PowerWatch(const PowerBuses& buses, std::function<void()> onChange)
    : buses_(buses), onChange_(std::move(onChange)) {
    if (buses_.session && buses_.session->connection().isConnected()) {
        auto* const services = new QDBusServiceWatcher(this);
        for (const InhibitMeans means : {InhibitMeans::plasma, InhibitMeans::sessionManager,
                                         InhibitMeans::powerManager, InhibitMeans::portal}) {
            services->addWatchedService(QString::fromUtf8(serviceName(means).data()));
        }
        watch(*buses_.session, *services);
    }
    if (buses_.system && buses_.system->connection().isConnected()) {
        auto* const services = new QDBusServiceWatcher(this);
        services->addWatchedService(QString::fromUtf8(serviceName(InhibitMeans::logind).data()));
        watch(*buses_.system, *services);
        QDBusConnection system = buses_.system->connection();
        // Of any sender: with a name the library would ask the bus for its owner and wait.
        system.connect(QString(), QStringLiteral("/org/freedesktop/login1"),
                       QStringLiteral("org.freedesktop.login1.Manager"),
                       QStringLiteral("PrepareForSleep"), this, SLOT(prepareForSleep(bool)));
    }
}

PowerWatch::~PowerWatch() = default;

void PowerWatch::watch(const PrivateBus& bus, QDBusServiceWatcher& watcher) {
    watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    watcher.setConnection(bus.connection());
    connect(&watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] { onChange_(); });
    QDBusConnection connection = bus.connection();
    // The library's own signal for the end of a connection.
    connection.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                       QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                       this, SLOT(disconnected()));
}

void PowerWatch::expectOwner(const QString& name) {
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    question << name;
    // The bus answers after it has begun to tell of changes.
    auto* const answer =
        new QDBusPendingCallWatcher(buses_.session->connection().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<bool> hasOwner = *answer;
        if (hasOwner.isValid() && !hasOwner.value()) {
            onChange_();
        }
    });
}

void PowerWatch::disconnected() {
    onChange_();
}

void PowerWatch::prepareForSleep(bool begins) {
    if (!begins) {
        onChange_();
    }
}

} // namespace vigilo::platform
