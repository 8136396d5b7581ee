#include "platform/qt/ManagerSelection.h"

#include "platform/qt/XcbReply.h"

#include <cstddef>
#include <utility>

#include <QGuiApplication>

#include <xcb/xcb.h>

namespace vigilo::platform {

ManagerSelection::ManagerSelection(std::string_view selection, std::string_view property,
                                   std::function<void()> onChanged)
    : onChanged_(std::move(onChanged)), selection_(xcbAtom(xcbConnection(), selection)),
      property_(xcbAtom(xcbConnection(), property)), manager_(xcbAtom(xcbConnection(), "MANAGER")) {
    qGuiApp->installNativeEventFilter(this);
    look();
}

ManagerSelection::~ManagerSelection() {
    qGuiApp->removeNativeEventFilter(this);
}

bool ManagerSelection::isPossible() {
    return xcbConnection() != nullptr;
}

void ManagerSelection::look() {
    const XcbReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        xcbConnection(), xcb_get_selection_owner(xcbConnection(), selection_), nullptr));
    owner_ = owner ? owner->owner : xcb_window_t{XCB_WINDOW_NONE};
    if (owner_ != XCB_WINDOW_NONE) {
        // Its end is to be heard of, and a change of the property.
        const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(xcbConnection(), owner_, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(xcbConnection());
    }
}

std::string ManagerSelection::property(std::uint32_t type, std::uint32_t longest) const {
    if (owner_ == XCB_WINDOW_NONE) {
        return {};
    }
    constexpr std::uint32_t unit = 4;
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        xcbConnection(),
        xcb_get_property(xcbConnection(), 0, owner_, property_, type, 0, longest / unit), nullptr));
    return reply ? std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                               static_cast<std::size_t>(xcb_get_property_value_length(reply.get())))
                 : std::string();
}

bool ManagerSelection::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    bool isChanged = false;
    switch (event->response_type & 0x7F) {
    case XCB_CLIENT_MESSAGE: {
        const auto* const news = reinterpret_cast<const xcb_client_message_event_t*>(event);
        isChanged = news->type == manager_ && news->data.data32[1] == selection_;
        break;
    }
    case XCB_DESTROY_NOTIFY:
        isChanged = owner_ != XCB_WINDOW_NONE &&
                    reinterpret_cast<const xcb_destroy_notify_event_t*>(event)->window == owner_;
        break;
    case XCB_PROPERTY_NOTIFY: {
        const auto* const news = reinterpret_cast<const xcb_property_notify_event_t*>(event);
        isChanged = owner_ != XCB_WINDOW_NONE && news->window == owner_ && news->atom == property_;
        break;
    }
    default:
        break;
    }
    if (isChanged) {
        look();
        onChanged_();
    }
    return false;
}

} // namespace vigilo::platform
