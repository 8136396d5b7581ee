#pragma once

#include "platform/linux/power/Inhibition.h"
#include "platform/linux/power/PrivateBus.h"

#include <cstdint>
#include <memory>
#include <string>

#include <QDeadlineTimer>

namespace vigilo::platform {

/// What the desktop portal answered.
struct PortalGrant {
    std::int32_t status = 0; ///< 0: granted
    std::unique_ptr<Inhibition> inhibition;
};

/// Asks the desktop portal, which is all that a sandboxed program may ask, to hold off idle sleep;
/// blocks until it has answered, or the deadline has passed. Only the portal's later response
/// counts, since it accepts every request and refuses afterwards. Any thread.
PortalGrant takePortalInhibition(const std::shared_ptr<PrivateBus>& bus, const std::string& reason,
                                 const QDeadlineTimer& deadline);

/// Whether this program runs inside a Flatpak sandbox.
bool isInsideFlatpak();

} // namespace vigilo::platform
