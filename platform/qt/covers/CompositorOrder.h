#pragma once

#include <chrono>
#include <cstdint>

#include <QTimer>

#include <xcb/xcb.h>

namespace vigilo::platform {

/// Gets a cover drawn where the X server has it: programs that draw the windows themselves keep a
/// list of their own, which does not always follow. Main thread.
class CompositorOrder {
public:
    /// The cover, a child of the root window, is shown already or will be soon.
    CompositorOrder(xcb_connection_t* server, std::uint32_t cover);
    ~CompositorOrder();
    CompositorOrder(const CompositorOrder&) = delete;
    CompositorOrder& operator=(const CompositorOrder&) = delete;

    /// To be called after each raise of the cover, before the requests are sent.
    void followRaise();

    /// To be called with each event of the server.
    void answer(const xcb_generic_event_t* event) const;

    /// Whether the event makes it necessary to put the cover up anew, since raising it will not do.
    bool isOverlooked(const xcb_generic_event_t* event) const;

    /// Puts the cover, which is on top, up anew at a place in the server's pixels. A grab of its
    /// own ends by that.
    void putUpAnew(int x, int y) const;

    /// Keeps the keyboard from others, if the cover has it, until the cover grabs it again.
    void holdKeyboard() const;

private:
    bool isStart(const xcb_generic_event_t* event) const;
    bool isAboveInMutter(const xcb_generic_event_t* event) const;
    bool isMutter() const;
    void remind();

    xcb_connection_t* server_;
    std::uint32_t root_;
    std::uint32_t cover_;
    std::uint32_t marker_;     ///< moved to make compositors look at the stack
    std::uint32_t compositor_; ///< the selection that a running one owns
    std::uint32_t managerCheck_;
    std::uint32_t name_;
    std::uint8_t selectionEvent_ = 0; ///< none where it is 0
    QTimer reminderTimer_;
    std::chrono::milliseconds reminder_{};
};

} // namespace vigilo::platform
