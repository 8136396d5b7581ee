#include "platform/qt/covers/X11Placement.h"

#include "platform/Fatal.h"

#include <chrono>
#include <cstdlib>
#include <memory>

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

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, Free>;

xcb_connection_t* connection() {
    const auto* const application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (application == nullptr) {
        fatal("an X11 cover without an X server");
    }
    return application->connection();
}

xcb_window_t rootWindow() {
    return xcb_setup_roots_iterator(xcb_get_setup(connection())).data->root;
}

/// Adds to what we hear of a window; the toolkit's own choice stays.
void listen(xcb_window_t window, std::uint32_t events) {
    const ReplyPointer<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection(),
                                        xcb_get_window_attributes(connection(), window), nullptr));
    if (attributes) {
        const std::uint32_t mask = attributes->your_event_mask | events;
        xcb_change_window_attributes(connection(), window, XCB_CW_EVENT_MASK, &mask);
    }
}

bool isCover(xcb_window_t id) {
    for (const QWindow* const window : QGuiApplication::topLevelWindows()) {
        if (window->handle() != nullptr && window->winId() == id) {
            return platform::isCover(window);
        }
    }
    return false;
}

/// Whether the event says that something may stand above the cover now.
bool mayHide(const xcb_generic_event_t* event, xcb_window_t cover) {
    switch (event->response_type & 0x7F) {
    case XCB_MAP_NOTIFY:
        return !isCover(reinterpret_cast<const xcb_map_notify_event_t*>(event)->window);
    case XCB_CONFIGURE_NOTIFY:
        return !isCover(reinterpret_cast<const xcb_configure_notify_event_t*>(event)->window);
    case XCB_VISIBILITY_NOTIFY: {
        const auto* const visibility =
            reinterpret_cast<const xcb_visibility_notify_event_t*>(event);
        return visibility->window == cover && visibility->state != XCB_VISIBILITY_UNOBSCURED;
    }
    default:
        return false;
    }
}

bool losesFocus(const xcb_generic_event_t* event, xcb_window_t cover) {
    if ((event->response_type & 0x7F) != XCB_FOCUS_OUT) {
        return false;
    }
    const auto* const loss = reinterpret_cast<const xcb_focus_out_event_t*>(event);
    return loss->event == cover &&
           (loss->mode == XCB_NOTIFY_MODE_NORMAL || loss->mode == XCB_NOTIFY_MODE_WHILE_GRABBED);
}

} // namespace

X11Placement::X11Placement(QQuickView& view, QScreen& screen) : view_(view) {
    view_.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
    view_.setScreen(&screen);
    view_.setGeometry(screen.geometry());
    raiseTimer_.setSingleShot(true);
    QObject::connect(&raiseTimer_, &QTimer::timeout, &view_, [this] { raise(); });
    grabTimer_.setSingleShot(true);
    QObject::connect(&grabTimer_, &QTimer::timeout, &view_, [this] { grabKeyboard(); });
}

X11Placement::~X11Placement() {
    qGuiApp->removeNativeEventFilter(this);
}

void X11Placement::show() {
    view_.create();
    listen(rootWindow(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    listen(static_cast<xcb_window_t>(view_.winId()), XCB_EVENT_MASK_VISIBILITY_CHANGE);
    qGuiApp->installNativeEventFilter(this);
    view_.show();
    raise();
}

void X11Placement::takeKeyboard() {
    if (XwaylandFocus::isNeeded()) {
        waylandFocus_.emplace(connection());
    }
    grabKeyboard();
    focusKeeper_.emplace([this] { return hasFocus(); },
                         [this] {
                             if (waylandFocus_) {
                                 waylandFocus_->moveTo(static_cast<xcb_window_t>(view_.winId()));
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
    const auto cover = static_cast<xcb_window_t>(view_.winId());
    if (focusKeeper_ && losesFocus(event, cover)) {
        // The toolkit waits some tenths of a second, in which the keys go elsewhere.
        focusKeeper_->lose();
    }
    if (mayHide(event, cover) && !raiseTimer_.isActive()) {
        if (sinceRaise_.isValid() && sinceRaise_.elapsed() < raisePause.count()) {
            raiseTimer_.start(raisePause);
        } else {
            raise();
        }
    }
    return false;
}

void X11Placement::raise() {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection(), static_cast<xcb_window_t>(view_.winId()),
                         XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(connection());
    sinceRaise_.start();
}

bool X11Placement::hasFocus() const {
    return QGuiApplication::focusWindow() == &view_ &&
           (!waylandFocus_ || waylandFocus_->isAt(static_cast<xcb_window_t>(view_.winId())));
}

void X11Placement::grabKeyboard() {
    const auto window = static_cast<xcb_window_t>(view_.winId());
    // No window manager gives the focus to a window that it does not manage.
    xcb_set_input_focus(connection(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    const ReplyPointer<xcb_grab_keyboard_reply_t> reply(
        xcb_grab_keyboard_reply(connection(),
                                xcb_grab_keyboard(connection(), 1, window, XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    if (!reply || reply->status != XCB_GRAB_STATUS_SUCCESS) {
        grabTimer_.start(grabPause);
    }
}

} // namespace vigilo::platform
