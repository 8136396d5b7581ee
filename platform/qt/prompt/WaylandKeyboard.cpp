#include "platform/qt/prompt/WaylandKeyboard.h"

#include "platform/linux/FileDescriptor.h"

#include <utility>

#include <sys/mman.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

namespace vigilo::platform {

/// What the compositor calls; only the layouts and the modifiers are of interest.
struct WaylandKeyboard::Events {
    static void keymap(void* self, wl_keyboard*, std::uint32_t format, int descriptor,
                       std::uint32_t size) {
        static_cast<WaylandKeyboard*>(self)->takeKeymap(format, descriptor, size);
    }

    static void modifiers(void* self, wl_keyboard*, std::uint32_t, std::uint32_t depressed,
                          std::uint32_t latched, std::uint32_t locked, std::uint32_t group) {
        static_cast<WaylandKeyboard*>(self)->takeModifiers(depressed, latched, locked, group);
    }

    static void enter(void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {}
    static void leave(void*, wl_keyboard*, std::uint32_t, wl_surface*) {}
    static void key(void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t,
                    std::uint32_t) {}
    static void repeat(void*, wl_keyboard*, std::int32_t, std::int32_t) {}

    static constexpr wl_keyboard_listener listener{.keymap = keymap,
                                                   .enter = enter,
                                                   .leave = leave,
                                                   .key = key,
                                                   .modifiers = modifiers,
                                                   .repeat_info = repeat};
};

void WaylandKeyboard::Unref::operator()(xkb_context* context) const {
    xkb_context_unref(context);
}

void WaylandKeyboard::Unref::operator()(xkb_keymap* keymap) const {
    xkb_keymap_unref(keymap);
}

void WaylandKeyboard::Unref::operator()(xkb_state* state) const {
    xkb_state_unref(state);
}

WaylandKeyboard::WaylandKeyboard(wl_seat* seat, Listener listener)
    : listener_(std::move(listener)), keyboard_(wl_seat_get_keyboard(seat)),
      context_(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES)) {
    wl_keyboard_add_listener(keyboard_, &Events::listener, this);
}

WaylandKeyboard::~WaylandKeyboard() {
    if (wl_keyboard_get_version(keyboard_) >= WL_KEYBOARD_RELEASE_SINCE_VERSION) {
        wl_keyboard_release(keyboard_);
    } else {
        wl_keyboard_destroy(keyboard_);
    }
}

void WaylandKeyboard::takeKeymap(std::uint32_t format, int descriptor, std::uint32_t size) {
    const FileDescriptor file(descriptor);
    state_.reset();
    keymap_.reset();
    if (format != WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 || size == 0 || !context_) {
        return;
    }
    void* const text = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.number(), 0);
    if (text == MAP_FAILED) {
        return;
    }
    // It ends with a NUL.
    keymap_.reset(xkb_keymap_new_from_buffer(context_.get(), static_cast<const char*>(text),
                                             size - 1, XKB_KEYMAP_FORMAT_TEXT_V1,
                                             XKB_KEYMAP_COMPILE_NO_FLAGS));
    munmap(text, size);
    if (keymap_) {
        state_.reset(xkb_state_new(keymap_.get()));
        takeModifiers(0, 0, 0, 0);
    }
}

void WaylandKeyboard::takeModifiers(std::uint32_t depressed, std::uint32_t latched,
                                    std::uint32_t locked, std::uint32_t group) {
    if (!state_) {
        return;
    }
    xkb_state_update_mask(state_.get(), depressed, latched, locked, 0, 0, group);
    const xkb_layout_index_t layout =
        xkb_state_serialize_layout(state_.get(), XKB_STATE_LAYOUT_EFFECTIVE);
    listener_({.isCapsLockOn = xkb_state_mod_name_is_active(state_.get(), XKB_MOD_NAME_CAPS,
                                                            XKB_STATE_MODS_LOCKED) > 0,
               .layout = QString::fromUtf8(xkb_keymap_layout_get_name(keymap_.get(), layout))});
}

} // namespace vigilo::platform
