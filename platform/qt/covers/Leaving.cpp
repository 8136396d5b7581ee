#include "platform/qt/covers/Leaving.h"

#include "platform/qt/covers/WaylandGlobals.h"

#include <QEvent>
#include <QGuiApplication>
#include <QVariant>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>
#include <qpa/qwindowsysteminterface.h>

#include <wayland-client.h>

namespace vigilo::platform {

namespace {

constexpr const char* leavingProperty = "isLeaving";

/// Keeps every event from a window, and hides it when its last picture was shown, which the
/// request for an update tells that was made since. One that is destroyed has no need of events
/// either.
class Silence : public QObject {
public:
    explicit Silence(QWindow& window) : QObject(&window), window_(window) {
        window.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::UpdateRequest) {
            window_.hide();
        }
        return true;
    }

private:
    QWindow& window_;
};

/// The toolkit gives a window with this flag no role, nor looks at what becomes of its surface.
bool hasRole(const QWindow& window) {
    return !window.flags().testFlag(Qt::BypassWindowManagerHint);
}

/// None on other display servers, nor for a window that is hidden.
wl_surface* surfaceOf(QWindow& window) {
    if (waylandDisplay() == nullptr) {
        return nullptr;
    }
    return static_cast<wl_surface*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", &window));
}

} // namespace

void leaveDisplay(QWindow& window) {
    if (surfaceOf(window) == nullptr) {
        window.destroy();
        return;
    }
    markAsLeaving(window, true);
    if (QGuiApplication::focusWindow() == &window) {
        QWindowSystemInterface::handleWindowActivated<QWindowSystemInterface::SynchronousDelivery>(
            nullptr);
    }
    if (!hasRole(window)) {
        unmap(window);
    }
    new Silence(window);
    window.requestUpdate();
}

void unmap(QWindow& window) {
    if (wl_surface* const surface = surfaceOf(window)) {
        wl_surface_attach(surface, nullptr, 0, 0);
        wl_surface_commit(surface);
        wl_display_flush(waylandDisplay());
    }
}

void markAsLeaving(QWindow& window, bool isLeaving) {
    window.setProperty(leavingProperty, isLeaving);
}

bool isOnDisplay(const QWindow& window) {
    return window.isVisible() && !window.property(leavingProperty).toBool();
}

} // namespace vigilo::platform
