#include "platform/qt/XcbReply.h"

#include <cstdint>

namespace vigilo::platform {

xcb_atom_t xcbAtom(xcb_connection_t* server, std::string_view name) {
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        server, xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace vigilo::platform
