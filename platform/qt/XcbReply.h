#pragma once

#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

namespace vigilo::platform {

struct FreeXcbReply {
    void operator()(void* reply) const { std::free(reply); }
};

/// What the X server has answered; null when it has answered with an error.
template <typename Reply>
using XcbReply = std::unique_ptr<Reply, FreeXcbReply>;

/// The toolkit's own connection; null where it has none. Main thread.
xcb_connection_t* xcbConnection();

xcb_window_t xcbRootWindow(xcb_connection_t* server);

/// The server's number of a name; XCB_ATOM_NONE when it does not answer. Waits for the server.
xcb_atom_t xcbAtom(xcb_connection_t* server, std::string_view name);

/// The first window that this property of a window names; XCB_WINDOW_NONE without one. Waits for
/// the server.
xcb_window_t xcbWindowIn(xcb_connection_t* server, xcb_window_t window, xcb_atom_t property);

} // namespace vigilo::platform
