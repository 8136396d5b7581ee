#include "platform/qt/covers/LayerShell.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

#include <keyboard-shortcuts-inhibit.h>
#include <wayland-client.h>
#include <wlr-layer-shell.h>

namespace vigilo::platform {

namespace {

constexpr std::uint32_t latestShell = 4;

void add(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
         std::uint32_t version) {
    auto& shell = *static_cast<LayerShell*>(data);
    const std::string_view offered = interface;
    if (offered == wl_shm_interface.name) {
        shell.memory = static_cast<wl_shm*>(wl_registry_bind(registry, name, &wl_shm_interface, 1));
    } else if (offered == zwlr_layer_shell_v1_interface.name) {
        shell.shell = static_cast<zwlr_layer_shell_v1*>(wl_registry_bind(
            registry, name, &zwlr_layer_shell_v1_interface, std::min(version, latestShell)));
    } else if (offered == zwp_keyboard_shortcuts_inhibit_manager_v1_interface.name) {
        shell.shortcuts = static_cast<zwp_keyboard_shortcuts_inhibit_manager_v1*>(wl_registry_bind(
            registry, name, &zwp_keyboard_shortcuts_inhibit_manager_v1_interface, 1));
    }
}

void remove(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener registryListener{.global = add, .global_remove = remove};

} // namespace

std::shared_ptr<LayerShell> LayerShell::connect() {
    // The compositor answers late when it has just begun to show a first cover.
    static std::weak_ptr<LayerShell> inUse;
    if (auto shell = inUse.lock()) {
        return shell;
    }
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        return nullptr;
    }
    std::shared_ptr<LayerShell> shell(new LayerShell);
    shell->display = static_cast<wl_display*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display"));
    if (shell->display == nullptr) {
        return nullptr;
    }
    shell->queue = wl_display_create_queue(shell->display);
    auto* const wrapper = static_cast<wl_display*>(wl_proxy_create_wrapper(shell->display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper), shell->queue);
    wl_registry* const registry = wl_display_get_registry(wrapper);
    wl_proxy_wrapper_destroy(wrapper);
    wl_registry_add_listener(registry, &registryListener, shell.get());
    wl_display_roundtrip_queue(shell->display, shell->queue);
    wl_registry_destroy(registry);
    if (shell->shell == nullptr) {
        return nullptr;
    }
    inUse = shell;
    return shell;
}

LayerShell::~LayerShell() {
    if (shortcuts != nullptr) {
        zwp_keyboard_shortcuts_inhibit_manager_v1_destroy(shortcuts);
    }
    if (shell != nullptr) {
        zwlr_layer_shell_v1_destroy(shell);
    }
    if (memory != nullptr) {
        wl_shm_destroy(memory);
    }
    if (queue != nullptr) {
        wl_event_queue_destroy(queue);
    }
}

} // namespace vigilo::platform
