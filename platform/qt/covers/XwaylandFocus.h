#pragma once

#include <cstdint>

#include <xcb/xcb.h>

namespace vigilo::platform {

/// The focus of a Wayland session as its X server has a part in it: the compositor gives its
/// keyboard to the X window with the X focus when it hears that the focus came there, and it hears
/// that only of a window that it has come to know, some time after it was shown.
class XwaylandFocus {
public:
    /// Whether the X server is one of a Wayland session.
    static bool isNeeded();

    explicit XwaylandFocus(xcb_connection_t* server);
    ~XwaylandFocus();
    XwaylandFocus(const XwaylandFocus&) = delete;
    XwaylandFocus& operator=(const XwaylandFocus&) = delete;

    /// Whether the compositor says that the window has the focus.
    bool isAt(std::uint32_t window) const;

    /// Whether the event says that the compositor has given its word anew.
    bool isNews(const xcb_generic_event_t* event) const;

    /// Lets the focus come to the window, also when it is there already.
    void moveTo(std::uint32_t window) const;

private:
    xcb_connection_t* server_;
    std::uint32_t root_;
    std::uint32_t activeWindow_; ///< the property with the compositor's word
    std::uint32_t elsewhere_;    ///< an invisible window that the focus can come from
};

} // namespace vigilo::platform
