#include "platform/qt/covers/CoverPlacement.h"

#include "platform/qt/covers/FullScreenPlacement.h"
#include "platform/qt/covers/LayerShellPlacement.h"
#include "platform/qt/covers/Leaving.h"
#include "platform/qt/covers/X11Placement.h"

#include <QGuiApplication>
#include <QQuickView>
#include <QVariant>
#include <QWindow>

namespace vigilo::platform {

namespace {
constexpr const char* coverProperty = "isCover";
} // namespace

std::unique_ptr<CoverPlacement> makeCoverPlacement(QQuickView& view, QScreen& screen,
                                                   LeavingWindows& leaving) {
    markAsCover(view);
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        return std::make_unique<X11Placement>(view, screen);
    }
    if (auto placement = LayerShellPlacement::make(view, screen)) {
        return placement;
    }
    return std::make_unique<FullScreenPlacement>(view, screen, leaving);
}

void markAsCover(QWindow& window) {
    window.setProperty(coverProperty, true);
}

bool isCover(const QWindow* window) {
    return window != nullptr && isOnDisplay(*window) && window->property(coverProperty).toBool();
}

} // namespace vigilo::platform
