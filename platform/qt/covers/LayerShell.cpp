#include "platform/qt/covers/LayerShell.h"

#include "platform/qt/covers/WaylandGlobals.h"

#include <cstdint>

#include <keyboard-shortcuts-inhibit.h>
#include <wayland-client.h>
#include <wlr-layer-shell.h>

namespace vigilo::platform {

namespace {

constexpr std::uint32_t latestShell = 4;

void take(LayerShell& shell, const WaylandGlobal& offered) {
    if (offered.interface == wl_shm_interface.name) {
        shell.memory = offered.bind<wl_shm>(wl_shm_interface, 1);
    } else if (offered.interface == zwlr_layer_shell_v1_interface.name) {
        shell.shell = offered.bind<zwlr_layer_shell_v1>(zwlr_layer_shell_v1_interface, latestShell);
    } else if (offered.interface == zwp_keyboard_shortcuts_inhibit_manager_v1_interface.name) {
        shell.shortcuts = offered.bind<zwp_keyboard_shortcuts_inhibit_manager_v1>(
            zwp_keyboard_shortcuts_inhibit_manager_v1_interface, 1);
    } else if (offered.interface == "org_kde_plasma_shell") {
        shell.isKWin = true;
    }
}

} // namespace

std::shared_ptr<LayerShell> LayerShell::connect() {
    // The compositor answers late when it has just begun to show a first cover.
    static std::weak_ptr<LayerShell> inUse;
    if (auto shell = inUse.lock()) {
        return shell;
    }
    wl_display* const display = waylandDisplay();
    if (display == nullptr) {
        return nullptr;
    }
    std::shared_ptr<LayerShell> shell(new LayerShell);
    shell->display = display;
    shell->queue = wl_display_create_queue(display);
    visitGlobals(display, shell->queue,
                 [&](const WaylandGlobal& offered) { take(*shell, offered); });
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
