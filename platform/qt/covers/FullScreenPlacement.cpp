#include "platform/qt/covers/FullScreenPlacement.h"

#include <QGuiApplication>
#include <QQuickView>
#include <QScreen>

namespace vigilo::platform {

FullScreenPlacement::FullScreenPlacement(QQuickView& view, QScreen& screen) : view_(view) {
    view_.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    view_.setScreen(&screen);
    view_.setGeometry(screen.geometry());
}

void FullScreenPlacement::show() {
    view_.showFullScreen();
    view_.raise();
}

void FullScreenPlacement::takeKeyboard() {
    view_.requestActivate();
    focusKeeper_.emplace([] { return isCover(QGuiApplication::focusWindow()); },
                         [this] {
                             view_.raise();
                             view_.requestActivate();
                         });
    overview_.emplace();
}

} // namespace vigilo::platform
