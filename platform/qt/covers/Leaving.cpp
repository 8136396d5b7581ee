#include "platform/qt/covers/Leaving.h"

#include "platform/qt/covers/LastPicture.h"
#include "platform/qt/covers/WaylandGlobals.h"

#include <chrono>

#include <QGuiApplication>
#include <QVariant>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>
#include <qpa/qwindowsysteminterface.h>

#include <wayland-client.h>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;

constexpr const char* leavingProperty = "isLeaving";

// A compositor need not show what is no longer there; the window is about to be destroyed then.
constexpr std::chrono::milliseconds longestUnmapped = 400ms;

/// Keeps every event from a window. One that is destroyed has no need of them either.
class Silence : public QObject {
public:
    explicit Silence(QWindow& window) : QObject(&window) { window.installEventFilter(this); }

protected:
    bool eventFilter(QObject*, QEvent*) override { return true; }
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
    // After that: what comes last hears first.
    new LastPicture(
        window, [&window] { window.hide(); },
        hasRole(window) ? LastPicture::longest : longestUnmapped, &window);
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
