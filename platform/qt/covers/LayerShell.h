#pragma once

#include <memory>

struct wl_display;
struct wl_event_queue;
struct wl_shm;
struct zwlr_layer_shell_v1;
struct zwp_keyboard_shortcuts_inhibit_manager_v1;

namespace vigilo::platform {

/// What a Wayland compositor offers for covers, over the toolkit's own connection.
class LayerShell {
public:
    /// The one that is in use already, or else a new one; none where the display server is no
    /// Wayland compositor or offers no layers. Main thread.
    static std::shared_ptr<LayerShell> connect();
    ~LayerShell();
    LayerShell(const LayerShell&) = delete;
    LayerShell& operator=(const LayerShell&) = delete;

    wl_display* display = nullptr;
    wl_event_queue* queue = nullptr; ///< for answers that must come before anything else happens
    wl_shm* memory = nullptr;
    zwlr_layer_shell_v1* shell = nullptr;
    zwp_keyboard_shortcuts_inhibit_manager_v1* shortcuts = nullptr; ///< perhaps not offered
    bool isKWin = false; ///< whose overlay layer is not its own

private:
    LayerShell() = default;
};

} // namespace vigilo::platform
