#include "platform/qt/QtScreens.h"

#include <QGuiApplication>
#include <QScreen>

namespace vigilo::platform {

QtScreens::QtScreens() : reported_(QtScreens::screens()) {
    reportTimer_.setSingleShot(true);
    connect(&reportTimer_, &QTimer::timeout, this, &QtScreens::report);
    const auto later = [this] { reportTimer_.start(0); };
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this, later](QScreen* screen) {
        watch(screen);
        later();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this, later] {
        // One that comes back at once, to its old place, is a change too: what stood on it is gone.
        reported_.clear();
        later();
    });
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, later);
    for (QScreen* const screen : QGuiApplication::screens()) {
        watch(screen);
    }
}

void QtScreens::watch(QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, [this] { reportTimer_.start(0); });
}

std::vector<Screen> QtScreens::screens() const {
    std::vector<Screen> result;
    for (const QScreen* const screen : QGuiApplication::screens()) {
        const QRect geometry = screen->geometry();
        if (!geometry.isEmpty() && !screen->name().isEmpty()) {
            result.push_back({.name = screen->name().toStdString(),
                              .frame = {.x = geometry.x(),
                                        .y = geometry.y(),
                                        .width = geometry.width(),
                                        .height = geometry.height()}});
        }
    }
    return result;
}

QScreen* QtScreens::find(const std::string& name) {
    for (QScreen* const screen : QGuiApplication::screens()) {
        if (screen->name().toStdString() == name) {
            return screen;
        }
    }
    return nullptr;
}

void QtScreens::report() {
    std::vector<Screen> now = screens();
    if (now == reported_) {
        return;
    }
    reported_ = std::move(now);
    if (!reported_.empty() && onChange_) {
        onChange_();
    }
}

} // namespace vigilo::platform
