#pragma once

#include <functional>

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>

namespace vigilo::platform {

/// Has an item shown by whatever panel hosts such items now, and by every one that comes after it.
/// Asks over the bus without ever waiting. Main thread.
class StatusNotifierWatcher : public QObject {
    Q_OBJECT

public:
    /// Asks whether there is a panel. Ask before an item is made: it is registered a good deal
    /// sooner where the answer is there by then.
    static QDBusPendingCall askForHost(const QDBusConnection& bus);

    /// Whether the answer to askForHost() is there and is yes.
    static bool isHosted(const QDBusPendingCall& question);

    /// `isHostKnown`: there is a panel, as an answer has said. `onHostedChanged` hears, from the
    /// event loop, whether a panel shows the item, and first of all what is so at the start.
    StatusNotifierWatcher(QDBusConnection bus, bool isHostKnown,
                          std::function<void(bool)> onHostedChanged);

private Q_SLOTS:
    void hostRegistered();
    void hostUnregistered();

private:
    void ownerChanged(bool isOwned);
    void look();
    void registerItem();
    void report(bool isHosted);

    QDBusConnection bus_;
    std::function<void(bool)> onHostedChanged_;
    QDBusServiceWatcher owner_;
    int generation_ = 0; ///< answers of a watcher that is gone count no longer
};

} // namespace vigilo::platform
