#pragma once

#include "platform/linux/power/PrivateBus.h"

#include <functional>
#include <initializer_list>

#include <QObject>
#include <QString>

class QDBusServiceWatcher;

namespace vigilo::platform {

/// Watches for what may undo an inhibition: a power service that comes, goes or restarts, a bus
/// that goes away, the machine waking from suspend. Main thread.
class PowerWatch : public QObject {
    Q_OBJECT

public:
    /// `onChange` is called from the event loop; it may come several times for one event.
    PowerWatch(const PowerBuses& buses, std::function<void()> onChange);
    ~PowerWatch() override;

    /// That nobody has this name of the session's bus is a change, too: it may have gone before
    /// anybody watched.
    void expectOwner(const QString& name);

private Q_SLOTS:
    void disconnected();
    void prepareForSleep(bool begins);

private:
    void watch(const PrivateBus& bus, QDBusServiceWatcher& watcher);

    PowerBuses buses_;
    std::function<void()> onChange_;
};

} // namespace vigilo::platform
