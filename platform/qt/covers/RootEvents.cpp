#include "platform/qt/covers/RootEvents.h"

#include "platform/qt/XcbReply.h"

#include <cstdint>

#include <xcb/xcb.h>

namespace vigilo::platform {

namespace {

constexpr std::uint32_t ofChildren = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;

/// Changes what we hear of the root window; the toolkit's own choice stays.
void select(std::uint32_t added, std::uint32_t removed) {
    xcb_connection_t* const server = xcbConnection();
    const xcb_window_t root = xcbRootWindow(server);
    const XcbReply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(server, xcb_get_window_attributes(server, root), nullptr));
    if (attributes) {
        const std::uint32_t mask = (attributes->your_event_mask | added) & ~removed;
        xcb_change_window_attributes(server, root, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(server);
    }
}

} // namespace

std::shared_ptr<RootEvents> RootEvents::hear() {
    static std::weak_ptr<RootEvents> inUse;
    if (auto events = inUse.lock()) {
        return events;
    }
    std::shared_ptr<RootEvents> events(new RootEvents);
    inUse = events;
    return events;
}

RootEvents::RootEvents() {
    select(ofChildren | XCB_EVENT_MASK_PROPERTY_CHANGE, XCB_EVENT_MASK_NO_EVENT);
}

RootEvents::~RootEvents() {
    select(XCB_EVENT_MASK_NO_EVENT, ofChildren);
}

} // namespace vigilo::platform
