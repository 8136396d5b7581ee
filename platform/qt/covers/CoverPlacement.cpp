#include "platform/qt/covers/CoverPlacement.h"

#include "platform/qt/covers/FullScreenPlacement.h"
#include "platform/qt/covers/LayerShellPlacement.h"
#include "platform/qt/covers/X11Placement.h"

#include <QGuiApplication>
#include <QWindow>

namespace vigilo::platform {

std::unique_ptr<CoverPlacement> makeCoverPlacement(QQuickView& view, QScreen& screen) {
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        return std::make_unique<X11Placement>(view, screen);
    }
    if (auto placement = LayerShellPlacement::make(view, screen)) {
        return placement;
    }
    return std::make_unique<FullScreenPlacement>(view, screen);
}

bool isCover(const QWindow* window) {
    return window != nullptr && window->isVisible() &&
           window->flags().testAnyFlags(Qt::BypassWindowManagerHint | Qt::WindowStaysOnTopHint);
}

} // namespace vigilo::platform
