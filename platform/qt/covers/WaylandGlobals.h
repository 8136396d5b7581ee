#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string_view>

#include <wayland-client.h>

namespace vigilo::platform {

/// The toolkit's own connection to a Wayland compositor; none on other display servers. Main
/// thread.
wl_display* waylandDisplay();

/// Something that a compositor offers to its programs.
struct WaylandGlobal {
    std::string_view interface;
    std::uint32_t version;
    wl_registry* registry;
    std::uint32_t name; ///< the compositor's number for it

    /// The object, for the caller to destroy, of the lower of the offered version and `latest`.
    template <typename Object>
    Object* bind(const wl_interface& type, std::uint32_t latest) const {
        return static_cast<Object*>(
            wl_registry_bind(registry, name, &type, std::min(version, latest)));
    }
};

/// Calls `visit` with each thing that the compositor offers now. What is bound then has its events
/// on `queue`, so nothing else happens while this waits for the compositor.
void visitGlobals(wl_display* display, wl_event_queue* queue,
                  const std::function<void(const WaylandGlobal&)>& visit);

} // namespace vigilo::platform
