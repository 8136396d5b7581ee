#include "helpers/lock/DesktopEffects.h"

#include "helpers/lock/LimitedBus.h"

#include <systemd/sd-bus.h>

namespace vigilo {

void restoreDesktopEffects() {
    if (const LimitedBus bus = openBus(sd_bus_open_user)) {
        ask(sd_bus_call_method, bus.get(), "org.kde.KWin", "/KWin", "org.kde.KWin", "reconfigure",
            nullptr, nullptr, "");
    }
}

} // namespace vigilo
