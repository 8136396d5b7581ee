#pragma once

#include <memory>

#include <QDBusConnection>
#include <QString>

namespace vigilo::platform {

/// A connection to a message bus of our own. Closing it, which its end does, makes every service
/// drop what it granted through it, also what it grants too late to be heard of.
class PrivateBus {
public:
    /// Connects, and waits for as long as the bus takes for it. Any thread.
    explicit PrivateBus(QDBusConnection::BusType type);
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// Perhaps not connected, when there is no such bus.
    const QDBusConnection& connection() const { return connection_; }

private:
    QString name_;
    QDBusConnection connection_;
};

/// The two buses that power services are on; none where it was not needed.
struct PowerBuses {
    std::shared_ptr<PrivateBus> session;
    std::shared_ptr<PrivateBus> system;
};

} // namespace vigilo::platform
