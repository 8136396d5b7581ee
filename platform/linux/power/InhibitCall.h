#pragma once

#include "platform/linux/power/InhibitMeans.h"

#include <cstdint>
#include <string>

#include <QDBusMessage>
#include <QString>

namespace vigilo::platform {

/// The call that takes an inhibition of idle sleep, and of nothing else, from a service; `reason`
/// is what the desktop shows for it. It never starts the service. Not for the portal, which takes
/// more than one call: a programming error.
QDBusMessage takeCall(InhibitMeans means, const std::string& reason);

/// The call that gives back what a service of the session granted under a cookie (0 is one like any
/// other). `owner` is the unique name of the process that granted it: another one that has taken
/// over the service's name may have given the same cookie to a newer request. logind grants no
/// cookies: asking for its call is a programming error.
QDBusMessage releaseCall(InhibitMeans means, const QString& owner, std::uint32_t cookie);

} // namespace vigilo::platform
