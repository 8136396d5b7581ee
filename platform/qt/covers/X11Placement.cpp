#include "platform/qt/covers/X11Placement.h"

#include "platform/qt/XcbReply.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include <QGuiApplication>
#include <QQuickView>
#include <QScreen>

#include <xcb/xcb.h>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;

// Two programs that both want to be on top must not keep the machine busy.
constexpr auto raisePause = 10ms;
constexpr auto grabPause = 100ms;

constexpr std::size_t eventSize = 32; // of every event of the core protocol, in bytes

/// Asks compositors to go on drawing the window with all others, which some do not for one that
/// fills a display: Mutter then loses track of which is on top when several come and go.
void keepComposited(xcb_window_t window) {
    const std::uint32_t never = 2;
    xcb_change_property(xcbConnection(), XCB_PROP_MODE_REPLACE, window,
                        xcbAtom(xcbConnection(), "_NET_WM_BYPASS_COMPOSITOR"), XCB_ATOM_CARDINAL,
                        32, 1, &never);
}

/// Adds to what we hear of a window; the toolkit's own choice stays.
void selectEvents(xcb_window_t window, std::uint32_t events) {
    const XcbReply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        xcbConnection(), xcb_get_window_attributes(xcbConnection(), window), nullptr));
    if (attributes) {
        const std::uint32_t mask = attributes->your_event_mask | events;
        xcb_change_window_attributes(xcbConnection(), window, XCB_CW_EVENT_MASK, &mask);
    }
}

/// Whether another cover lies over part of this one: displays that show the same have one each.
bool sharesItsPlace(const QWindow& cover) {
    return std::ranges::any_of(QGuiApplication::topLevelWindows(), [&cover](const QWindow* window) {
        return window != &cover && platform::isCover(window) &&
               window->geometry().intersects(cover.geometry());
    });
}

bool isCover(xcb_window_t id) {
    for (const QWindow* const window : QGuiApplication::topLevelWindows()) {
        if (window->handle() != nullptr && window->winId() == id) {
            return platform::isCover(window);
        }
    }
    return false;
}

/// Whether the event says that something may stand above the cover now, or that the cover is no
/// longer where it was put.
bool mayUncover(const xcb_generic_event_t* event, xcb_window_t cover, const QRect& frame) {
    switch (event->response_type & 0x7F) {
    case XCB_MAP_NOTIFY:
        return !isCover(reinterpret_cast<const xcb_map_notify_event_t*>(event)->window);
    case XCB_UNMAP_NOTIFY:
        return reinterpret_cast<const xcb_unmap_notify_event_t*>(event)->window == cover;
    case XCB_CONFIGURE_NOTIFY: {
        const auto* const change = reinterpret_cast<const xcb_configure_notify_event_t*>(event);
        const int borders = 2 * change->border_width;
        const QRect place(change->x, change->y, change->width + borders, change->height + borders);
        return change->window == cover ? place != frame
                                       : place.intersects(frame) && !isCover(change->window);
    }
    case XCB_CIRCULATE_NOTIFY:
        return true;
    default:
        return false;
    }
}

bool isHidden(const xcb_generic_event_t* event, xcb_window_t cover) {
    if ((event->response_type & 0x7F) != XCB_VISIBILITY_NOTIFY) {
        return false;
    }
    const auto* const visibility = reinterpret_cast<const xcb_visibility_notify_event_t*>(event);
    return visibility->window == cover && visibility->state != XCB_VISIBILITY_UNOBSCURED;
}

bool losesFocus(const xcb_generic_event_t* event, xcb_window_t cover) {
    if ((event->response_type & 0x7F) != XCB_FOCUS_OUT) {
        return false;
    }
    const auto* const loss = reinterpret_cast<const xcb_focus_out_event_t*>(event);
    return loss->event == cover && loss->detail != XCB_NOTIFY_DETAIL_POINTER &&
           loss->detail != XCB_NOTIFY_DETAIL_INFERIOR &&
           (loss->mode == XCB_NOTIFY_MODE_NORMAL || loss->mode == XCB_NOTIFY_MODE_WHILE_GRABBED);
}

} // namespace

X11Placement::X11Placement(QQuickView& view, QScreen& screen) : view_(view) {
    view_.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
    view_.setScreen(&screen);
    view_.setGeometry(screen.geometry());
    raiseTimer_.setSingleShot(true);
    QObject::connect(&raiseTimer_, &QTimer::timeout, &view_, [this] { putOnTop(); });
    grabTimer_.setSingleShot(true);
    QObject::connect(&grabTimer_, &QTimer::timeout, &view_, [this] { grabKeyboard(); });
}

X11Placement::~X11Placement() {
    qGuiApp->removeNativeEventFilter(this);
}

void X11Placement::show() {
    view_.create();
    window_ = static_cast<xcb_window_t>(view_.winId());
    rootEvents_ = RootEvents::hear();
    selectEvents(window_, XCB_EVENT_MASK_VISIBILITY_CHANGE);
    keepComposited(window_);
    paintGround();
    readFrame();
    order_.emplace(xcbConnection(), window_);
    qGuiApp->installNativeEventFilter(this);
    view_.show();
    putOnTop();
}

void X11Placement::takeKeyboard() {
    if (XwaylandFocus::isNeeded()) {
        waylandFocus_.emplace(xcbConnection());
    }
    grabKeyboard();
    focusKeeper_.emplace([this] { return hasFocus(); },
                         [this] {
                             if (waylandFocus_) {
                                 waylandFocus_->moveTo(window_);
                             }
                             grabKeyboard();
                         });
    overview_.emplace();
}

bool X11Placement::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    if (focusKeeper_ && losesFocus(event, window_)) {
        // The toolkit waits some tenths of a second, in which the keys go elsewhere.
        focusKeeper_->lose();
    }
    if (waylandFocus_ && waylandFocus_->isNews(event)) {
        focusKeeper_->look();
    }
    order_->answer(event);
    isOverlooked_ = isOverlooked_ || order_->isOverlooked(event);
    if ((isOverlooked_ || mayUncover(event, window_, frame_) || mayBeHidden(event)) &&
        !raiseTimer_.isActive()) {
        if (sinceRaise_.isValid() && sinceRaise_.elapsed() < raisePause.count()) {
            raiseTimer_.start(raisePause);
        } else {
            putOnTop();
        }
    }
    return false;
}

/// Of covers in the same place the one with the keyboard is on top, as the prompt is on it; the
/// others would raise themselves above each other for ever.
bool X11Placement::mayBeHidden(const xcb_generic_event_t* event) const {
    return isHidden(event, window_) && (focusKeeper_ || !sharesItsPlace(view_));
}

/// Lets the server itself fill what the toolkit has yet to draw. Otherwise what was there before
/// would show on: when the cover appears, and when a compositor comes or goes.
void X11Placement::paintGround() {
    const std::uint32_t colour = view_.color().rgba();
    xcb_change_window_attributes(xcbConnection(), window_, XCB_CW_BACK_PIXEL, &colour);
}

/// Where the cover is to stay, in the server's own pixels.
void X11Placement::readFrame() {
    const XcbReply<xcb_get_geometry_reply_t> reply(xcb_get_geometry_reply(
        xcbConnection(), xcb_get_geometry(xcbConnection(), window_), nullptr));
    if (reply) {
        frame_ = QRect(reply->x, reply->y, reply->width, reply->height);
    }
}

void X11Placement::putOnTop() {
    // Nothing comes of this in the server, and no event either, when all of it is so already.
    const xcb_configure_window_value_list_t values{
        .x = frame_.x(),
        .y = frame_.y(),
        .width = static_cast<std::uint32_t>(frame_.width()),
        .height = static_cast<std::uint32_t>(frame_.height()),
        .border_width = 0,
        .sibling = XCB_NONE,
        .stack_mode = XCB_STACK_MODE_ABOVE,
    };
    xcb_configure_window_aux(xcbConnection(), window_,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                 XCB_CONFIG_WINDOW_HEIGHT | XCB_CONFIG_WINDOW_BORDER_WIDTH |
                                 XCB_CONFIG_WINDOW_STACK_MODE,
                             &values);
    xcb_map_window(xcbConnection(), window_);
    if (std::exchange(isOverlooked_, false)) {
        putUpAnew();
    }
    order_->followRaise();
    xcb_flush(xcbConnection());
    sinceRaise_.start();
}

void X11Placement::putUpAnew() {
    const bool hasKeyboard = focusKeeper_.has_value();
    if (hasKeyboard) {
        order_->holdKeyboard();
    }
    order_->putUpAnew(frame_.x(), frame_.y());
    if (hasKeyboard) {
        grabKeyboard();
    }
}

bool X11Placement::hasFocus() const {
    return QGuiApplication::focusWindow() == &view_ &&
           (!waylandFocus_ || waylandFocus_->isAt(window_));
}

void X11Placement::grabKeyboard() {
    // No window manager gives the focus to a window that it does not manage.
    xcb_set_input_focus(xcbConnection(), XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
    const auto focusRequest = xcb_get_input_focus(xcbConnection());
    // Everything comes to this window, even when the focus is given to another one of ours.
    constexpr std::uint8_t ownerEvents = 0;
    const XcbReply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
        xcbConnection(),
        xcb_grab_keyboard(xcbConnection(), ownerEvents, window_, XCB_CURRENT_TIME,
                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr));
    const XcbReply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(xcbConnection(), focusRequest, nullptr));
    if (focus && focus->focus == window_ && QGuiApplication::focusWindow() != &view_) {
        tellToolkit();
    }
    if (!reply || reply->status != XCB_GRAB_STATUS_SUCCESS) {
        grabTimer_.start(grabPause);
    }
}

/// Sends the news that the server does not when the focus was here all the time. The toolkit takes
/// it to be elsewhere when another program asks the window manager to activate a window of ours.
void X11Placement::tellToolkit() {
    const xcb_focus_in_event_t news{.response_type = XCB_FOCUS_IN,
                                    .detail = XCB_NOTIFY_DETAIL_NONLINEAR,
                                    .sequence = 0,
                                    .event = window_,
                                    .mode = XCB_NOTIFY_MODE_NORMAL,
                                    .pad0 = {}};
    std::array<char, eventSize> event{};
    std::memcpy(event.data(), &news, sizeof news);
    xcb_send_event(xcbConnection(), 0, window_, XCB_EVENT_MASK_NO_EVENT, event.data());
    xcb_flush(xcbConnection());
}

} // namespace vigilo::platform
