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

FullScreenPlacement::~FullScreenPlacement() {
    QObject::disconnect(focusChange_);
}

void FullScreenPlacement::show() {
    view_.showFullScreen();
    view_.raise();
}

void FullScreenPlacement::takeKeyboard() {
    view_.requestActivate();
    QObject::disconnect(focusChange_);
    focusChange_ = QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &view_,
                                    [this](QWindow* focused) {
                                        if (focused == nullptr) {
                                            view_.raise();
                                            view_.requestActivate();
                                        }
                                    });
}

} // namespace vigilo::platform
