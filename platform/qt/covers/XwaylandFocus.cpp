#include "platform/qt/covers/XwaylandFocus.h"

#include "platform/qt/XcbReply.h"

#include <string_view>

#include <QtGlobal>

#include <xcb/xcb.h>

namespace vigilo::platform {

namespace {

constexpr std::string_view activeWindowName = "_NET_ACTIVE_WINDOW";

} // namespace

bool XwaylandFocus::isNeeded() {
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

XwaylandFocus::XwaylandFocus(xcb_connection_t* server)
    : server_(server), root_(xcb_setup_roots_iterator(xcb_get_setup(server)).data->root),
      elsewhere_(xcb_generate_id(server)) {
    const XcbReply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        server_,
        xcb_intern_atom(server_, 0, static_cast<std::uint16_t>(activeWindowName.size()),
                        activeWindowName.data()),
        nullptr));
    if (atom) {
        activeWindow_ = atom->atom;
    }
    const std::uint32_t isUnmanaged = 1;
    xcb_create_window(server_, 0, elsewhere_, root_, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &isUnmanaged);
    xcb_map_window(server_, elsewhere_);
}

XwaylandFocus::~XwaylandFocus() {
    xcb_destroy_window(server_, elsewhere_);
    xcb_flush(server_);
}

bool XwaylandFocus::isAt(std::uint32_t window) const {
    const XcbReply<xcb_get_property_reply_t> property(xcb_get_property_reply(
        server_, xcb_get_property(server_, 0, root_, activeWindow_, XCB_ATOM_WINDOW, 0, 1),
        nullptr));
    return property && xcb_get_property_value_length(property.get()) == sizeof window &&
           *static_cast<const std::uint32_t*>(xcb_get_property_value(property.get())) == window;
}

void XwaylandFocus::moveTo(std::uint32_t window) const {
    for (const std::uint32_t next : {elsewhere_, window}) {
        xcb_set_input_focus(server_, XCB_INPUT_FOCUS_POINTER_ROOT, next, XCB_CURRENT_TIME);
    }
    xcb_flush(server_);
}

} // namespace vigilo::platform
