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

/// Keeps every event from a window, and hides it when its last picture was shown. One that is
/// destroyed has no need of events either.
class Silence : public QObject {
public:
    explicit Silence(QWindow& window) : QObject(&window), window_(window), lastPicture_(window) {
        window.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (lastPicture_.wasShownBefore(*event)) {
            window_.hide();
        }
        return true;
    }

private:
    QWindow& window_;
    LastPicture lastPicture_;
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

LastPicture::LastPicture(QWindow& window) : window_(window) {
    window.requestUpdate();
}

bool LastPicture::wasShownBefore(const QEvent& event) {
    if (event.type() == QEvent::Expose) {
        isConfirmed_ = false; // it may have been drawn for that
    }
    if (event.type() != QEvent::UpdateRequest) {
        return false;
    }
    if (isConfirmed_) {
        return true;
    }
    // The first may be late news of the picture before, when the last was not asked for.
    isConfirmed_ = true;
    window_.requestUpdate();
    return false;
}

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
