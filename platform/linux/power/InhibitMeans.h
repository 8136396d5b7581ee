#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vigilo::platform {

/// A service that holds the machine back from idle sleep on request.
enum class InhibitMeans {
    plasma,         ///< Plasma's power manager
    sessionManager, ///< the session manager of GNOME, Cinnamon, MATE and Budgie
    powerManager,   ///< the power manager of Xfce and others
    logind,         ///< the login manager, on the system bus
    portal,         ///< the desktop portal, all that a sandboxed program may ask
};

/// The well-known name of the service on its bus.
std::string_view serviceName(InhibitMeans means);

/// What to ask outside a sandbox on a session bus where these names are owned. The first one is the
/// desktop's own: its answer decides. logind goes along with it, except on Plasma, which takes
/// logind's idle lock as a wish to keep the screen on, too.
std::vector<InhibitMeans> chooseInhibitMeans(const std::vector<std::string>& ownedNames);

} // namespace vigilo::platform
