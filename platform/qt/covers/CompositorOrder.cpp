#include "platform/qt/covers/CompositorOrder.h"

#include "platform/qt/XcbReply.h"

#include <string_view>

#include <xcb/xfixes.h>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;

// A compositor is busy when windows come.
constexpr auto firstReminder = 100ms;
constexpr auto lastReminder = 800ms;

// Out of sight, and not where Mutter has windows of its own, which it does not put on its list.
constexpr std::int16_t markerPlace = -50;

void stack(xcb_connection_t* server, xcb_window_t window, std::uint32_t mode) {
    xcb_configure_window(server, window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
}

} // namespace

CompositorOrder::CompositorOrder(xcb_connection_t* server, std::uint32_t cover)
    : server_(server), root_(xcb_setup_roots_iterator(xcb_get_setup(server)).data->root),
      cover_(cover), marker_(xcb_generate_id(server)),
      compositor_(xcbAtom(server, "_NET_WM_CM_S0")),
      managerCheck_(xcbAtom(server, "_NET_SUPPORTING_WM_CHECK")),
      name_(xcbAtom(server, "_NET_WM_NAME")) {
    const std::uint32_t isUnmanaged = 1;
    xcb_create_window(server_, XCB_COPY_FROM_PARENT, marker_, root_, markerPlace, markerPlace, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT, &isUnmanaged);
    xcb_map_window(server_, marker_);
    const xcb_query_extension_reply_t* const fixes =
        xcb_get_extension_data(server_, &xcb_xfixes_id);
    if (fixes != nullptr && fixes->present != 0) {
        selectionEvent_ =
            static_cast<std::uint8_t>(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);
        xcb_xfixes_select_selection_input(server_, marker_, compositor_,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    }
    reminderTimer_.setSingleShot(true);
    QObject::connect(&reminderTimer_, &QTimer::timeout, &reminderTimer_, [this] { remind(); });
}

CompositorOrder::~CompositorOrder() {
    xcb_destroy_window(server_, marker_);
    xcb_flush(server_);
}

/// Mutter notices that unmanaged windows have changed places only when one of them is out of place
/// among the managed windows. It puts all in order then, and the marker above the managed ones.
void CompositorOrder::followRaise() {
    stack(server_, marker_, XCB_STACK_MODE_BELOW);
    reminder_ = firstReminder;
    reminderTimer_.start(reminder_);
}

/// Mutter takes the marker up before it looks whether anything is out of place when it has just
/// taken in a window. Not answered for long, lest somebody does that without end.
void CompositorOrder::answer(const xcb_generic_event_t* event) const {
    if ((event->response_type & 0x7F) != XCB_CONFIGURE_NOTIFY || !reminderTimer_.isActive()) {
        return;
    }
    const auto* const change = reinterpret_cast<const xcb_configure_notify_event_t*>(event);
    if (change->window == marker_ && change->above_sibling != XCB_NONE) {
        stack(server_, marker_, XCB_STACK_MODE_BELOW);
        xcb_flush(server_);
    }
}

bool CompositorOrder::isOverlooked(const xcb_generic_event_t* event) const {
    return isStart(event) || isAboveInMutter(event);
}

/// The compositor of xfwm4 does not take in the unmanaged windows that are there when it starts.
bool CompositorOrder::isStart(const xcb_generic_event_t* event) const {
    if (selectionEvent_ == 0 || (event->response_type & 0x7F) != selectionEvent_) {
        return false;
    }
    const auto* const change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
    return change->window == marker_ && change->owner != XCB_NONE;
}

/// Another program's unmanaged window came. To put all in order Mutter needs a picture more, and
/// managed windows for the marker to be out of place among.
bool CompositorOrder::isAboveInMutter(const xcb_generic_event_t* event) const {
    if ((event->response_type & 0x7F) != XCB_MAP_NOTIFY) {
        return false;
    }
    const auto* const map = reinterpret_cast<const xcb_map_notify_event_t*>(event);
    const xcb_setup_t* const setup = xcb_get_setup(server_);
    const bool isOurs = (map->window & ~setup->resource_id_mask) == setup->resource_id_base;
    return !isOurs && map->override_redirect != 0 && isMutter();
}

bool CompositorOrder::isMutter() const {
    const xcb_window_t manager = xcbWindowIn(server_, root_, managerCheck_);
    if (manager == XCB_NONE) {
        return false;
    }
    constexpr std::uint32_t enough = 16; // of four bytes each
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        server_, xcb_get_property(server_, 0, manager, name_, XCB_GET_PROPERTY_TYPE_ANY, 0, enough),
        nullptr));
    const std::string_view name =
        reply
            ? std::string_view(static_cast<const char*>(xcb_get_property_value(reply.get())),
                               static_cast<std::size_t>(xcb_get_property_value_length(reply.get())))
            : std::string_view();
    return name.find("Mutter") != name.npos || name == "GNOME Shell";
}

void CompositorOrder::holdKeyboard() const {
    xcb_discard_reply(server_, xcb_grab_keyboard(server_, 0, marker_, XCB_CURRENT_TIME,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)
                                   .sequence);
}

/// To get the parent that it has already is as good as being unmapped and mapped again, but one
/// request, which nothing can come in between. The marker goes first: a compositor that has
/// overlooked it does not know what a raise above it means.
void CompositorOrder::putUpAnew(int x, int y) const {
    xcb_reparent_window(server_, marker_, root_, markerPlace, markerPlace);
    xcb_reparent_window(server_, cover_, root_, static_cast<std::int16_t>(x),
                        static_cast<std::int16_t>(y));
}

/// Mutter and the compositor of xfwm4 can miss a raise that comes while they take in a new window
/// or start. They mend their list at the next change of the stack, so here is one that changes
/// nothing to be seen.
void CompositorOrder::remind() {
    stack(server_, marker_, XCB_STACK_MODE_ABOVE);
    stack(server_, cover_, XCB_STACK_MODE_ABOVE);
    stack(server_, marker_, XCB_STACK_MODE_BELOW);
    xcb_flush(server_);
    if (reminder_ < lastReminder) {
        reminder_ *= 2;
        reminderTimer_.start(reminder_);
    }
}

} // namespace vigilo::platform
