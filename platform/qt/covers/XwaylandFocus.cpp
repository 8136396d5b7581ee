#include "platform/qt/covers/XwaylandFocus.h"

#include "platform/qt/XcbReply.h"

#include <QtGlobal>

#include <xcb/xcb.h>

namespace vigilo::platform {

bool XwaylandFocus::isNeeded() {
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

XwaylandFocus::XwaylandFocus(xcb_connection_t* server)
    : server_(server), root_(xcb_setup_roots_iterator(xcb_get_setup(server)).data->root),
      activeWindow_(xcbAtom(server, "_NET_ACTIVE_WINDOW")), elsewhere_(xcb_generate_id(server)) {
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
    return xcbWindowIn(server_, root_, activeWindow_) == window;
}

bool XwaylandFocus::isNews(const xcb_generic_event_t* event) const {
    if ((event->response_type & 0x7F) != XCB_PROPERTY_NOTIFY) {
        return false;
    }
    const auto* const change = reinterpret_cast<const xcb_property_notify_event_t*>(event);
    return change->window == root_ && change->atom == activeWindow_;
}

void XwaylandFocus::moveTo(std::uint32_t window) const {
    // Mutter takes a change of the focus for one that it has made itself until it has sent the
    // server another request, which an idle one may never do. It reads a property that changes, be
    // it by nothing; so at the latest the third time it heeds us.
    xcb_change_property(server_, XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
                        8, 0, nullptr);
    for (const std::uint32_t next : {elsewhere_, window}) {
        xcb_set_input_focus(server_, XCB_INPUT_FOCUS_POINTER_ROOT, next, XCB_CURRENT_TIME);
    }
    xcb_flush(server_);
}

} // namespace vigilo::platform
