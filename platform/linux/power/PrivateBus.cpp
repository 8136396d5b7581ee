#include "platform/linux/power/PrivateBus.h"

#include <QUuid>

namespace vigilo::platform {

PrivateBus::PrivateBus(QDBusConnection::BusType type)
    : name_(QUuid::createUuid().toString()),
      connection_(QDBusConnection::connectToBus(type, name_)) {}

PrivateBus::~PrivateBus() {
    QDBusConnection::disconnectFromBus(name_);
}

} // namespace vigilo::platform
