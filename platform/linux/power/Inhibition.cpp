#include "platform/linux/power/Inhibition.h"

namespace vigilo::platform {

CookieInhibition::CookieInhibition(std::shared_ptr<PrivateBus> bus, const QDBusMessage& releaseCall)
    : bus_(std::move(bus)), releaseCall_(releaseCall) {}

CookieInhibition::~CookieInhibition() {
    bus_->connection().send(releaseCall_);
}

} // namespace vigilo::platform
