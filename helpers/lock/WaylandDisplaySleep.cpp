#include "helpers/lock/WaylandDisplaySleep.h"

#include <memory>
#include <string_view>
#include <vector>

#include <wayland-client.h>
#include <wlr-output-power-management.h>

namespace vigilo {

namespace {

template <auto destroy>
struct Destroy {
    template <typename Object>
    void operator()(Object* object) const {
        destroy(object);
    }
};

/// An object of the protocol; the connection does not take it along when it closes.
template <typename Object, auto destroy>
using Owned = std::unique_ptr<Object, Destroy<destroy>>;

using Display = Owned<wl_display, wl_display_disconnect>;
using Registry = Owned<wl_registry, wl_registry_destroy>;
using Output = Owned<wl_output, wl_output_destroy>;
using OutputPower = Owned<zwlr_output_power_v1, zwlr_output_power_v1_destroy>;
using OutputPowerManager =
    Owned<zwlr_output_power_manager_v1, zwlr_output_power_manager_v1_destroy>;

/// What the compositor offers of the things that are needed here.
struct Globals {
    OutputPowerManager manager;
    std::vector<Output> outputs;
};

void add(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
         std::uint32_t) {
    auto& globals = *static_cast<Globals*>(data);
    const std::string_view offered = interface;
    if (offered == zwlr_output_power_manager_v1_interface.name) {
        globals.manager.reset(static_cast<zwlr_output_power_manager_v1*>(
            wl_registry_bind(registry, name, &zwlr_output_power_manager_v1_interface, 1)));
    } else if (offered == wl_output_interface.name) {
        globals.outputs.emplace_back(
            static_cast<wl_output*>(wl_registry_bind(registry, name, &wl_output_interface, 1)));
    }
}

void remove(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener registryListener{.global = add, .global_remove = remove};

} // namespace

void sleepWaylandDisplays() {
    const Display display(wl_display_connect(nullptr));
    if (!display) {
        return;
    }
    Globals globals;
    const Registry registry(wl_display_get_registry(display.get()));
    wl_registry_add_listener(registry.get(), &registryListener, &globals);
    wl_display_roundtrip(display.get());
    if (!globals.manager) {
        return;
    }
    std::vector<OutputPower> powers;
    powers.reserve(globals.outputs.size());
    for (const Output& output : globals.outputs) {
        powers.emplace_back(
            zwlr_output_power_manager_v1_get_output_power(globals.manager.get(), output.get()));
        zwlr_output_power_v1_set_mode(powers.back().get(), ZWLR_OUTPUT_POWER_V1_MODE_OFF);
    }
    wl_display_roundtrip(display.get());
}

} // namespace vigilo
