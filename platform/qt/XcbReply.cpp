#include "platform/qt/XcbReply.h"

#include <cstdint>

#include <QGuiApplication>

namespace vigilo::platform {

xcb_connection_t* xcbConnection() {
    const auto* const application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return application == nullptr ? nullptr : application->connection();
}

xcb_window_t xcbRootWindow(xcb_connection_t* server) {
    return xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
}

xcb_atom_t xcbAtom(xcb_connection_t* server, std::string_view name) {
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        server, xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_window_t xcbWindowIn(xcb_connection_t* server, xcb_window_t window, xcb_atom_t property) {
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        server, xcb_get_property(server, 0, window, property, XCB_ATOM_WINDOW, 0, 1), nullptr));
    return reply && xcb_get_property_value_length(reply.get()) == sizeof(xcb_window_t)
               ? *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()))
               : xcb_window_t{XCB_WINDOW_NONE};
}

} // namespace vigilo::platform
