#pragma once

#include "platform/qt/prompt/KeyboardSource.h"

#include <cstdint>
#include <memory>

struct wl_keyboard;
struct wl_seat;
struct xkb_context;
struct xkb_keymap;
struct xkb_state;

namespace vigilo::platform {

/// The keyboard of a Wayland seat: the compositor tells each client with the focus its layouts and
/// what is locked.
class WaylandKeyboard : public KeyboardSource {
public:
    /// The seat has a keyboard.
    WaylandKeyboard(wl_seat* seat, Listener listener);
    ~WaylandKeyboard() override;

private:
    struct Events;

    void takeKeymap(std::uint32_t format, int descriptor, std::uint32_t size);
    void takeModifiers(std::uint32_t depressed, std::uint32_t latched, std::uint32_t locked,
                       std::uint32_t group);

    struct Unref {
        void operator()(xkb_context* context) const;
        void operator()(xkb_keymap* keymap) const;
        void operator()(xkb_state* state) const;
    };

    Listener listener_;
    wl_keyboard* keyboard_;
    std::unique_ptr<xkb_context, Unref> context_;
    std::unique_ptr<xkb_keymap, Unref> keymap_;
    std::unique_ptr<xkb_state, Unref> state_;
};

} // namespace vigilo::platform
