#include "helpers/lock/WaylandDisplaySleep.h"

#include <memory>
#include <string_view>
#include <vector>

#include <wayland-client.h>
#include <wlr-output-power-management.h>

namespace vigilo {

namespace {

/// What the compositor offers of the things that are needed here.
struct Globals {
    zwlr_output_power_manager_v1* manager = nullptr;
    std::vector<wl_output*> outputs;
};

void add(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
         std::uint32_t) {
    auto& globals = *static_cast<Globals*>(data);
    const std::string_view offered = interface;
    if (offered == zwlr_output_power_manager_v1_interface.name) {
        globals.manager = static_cast<zwlr_output_power_manager_v1*>(
            wl_registry_bind(registry, name, &zwlr_output_power_manager_v1_interface, 1));
    } else if (offered == wl_output_interface.name) {
        globals.outputs.push_back(
            static_cast<wl_output*>(wl_registry_bind(registry, name, &wl_output_interface, 1)));
    }
}

void remove(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener registryListener{.global = add, .global_remove = remove};

} // namespace

void sleepWaylandDisplays() {
    // Everything that is bound goes with the connection.
    const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(
        wl_display_connect(nullptr), &wl_display_disconnect);
    if (!display) {
        return;
    }
    Globals globals;
    wl_registry* const registry = wl_display_get_registry(display.get());
    wl_registry_add_listener(registry, &registryListener, &globals);
    wl_display_roundtrip(display.get());
    if (globals.manager == nullptr) {
        return;
    }
    for (wl_output* const output : globals.outputs) {
        zwlr_output_power_v1_set_mode(
            zwlr_output_power_manager_v1_get_output_power(globals.manager, output),
            ZWLR_OUTPUT_POWER_V1_MODE_OFF);
    }
    wl_display_roundtrip(display.get());
}

} // namespace vigilo
