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

void XwaylandFocus::moveTo(std::uint32_t window) const {
    for (const std::uint32_t next : {elsewhere_, window}) {
        xcb_set_input_focus(server_, XCB_INPUT_FOCUS_POINTER_ROOT, next, XCB_CURRENT_TIME);
    }
    xcb_flush(server_);
}

} // namespace vigilo::platform
