#pragma once

#include "platform/qt/covers/CoverPlacement.h"

#include <QAbstractNativeEventFilter>
#include <QElapsedTimer>
#include <QTimer>

namespace vigilo::platform {

/// A window that no window manager manages, raised again whenever another one is mapped or moved in
/// the stack or hides part of it; the one with the keyboard grabs it, and tries again for as long
/// as another program has it (an open menu, say).
class X11Placement : public CoverPlacement, public QAbstractNativeEventFilter {
public:
    X11Placement(QQuickView& view, QScreen& screen);
    ~X11Placement() override;

    void show() override;
    void takeKeyboard() override;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void raise();
    void grabKeyboard();

    QQuickView& view_;
    QTimer raiseTimer_;
    QElapsedTimer sinceRaise_;
    QTimer grabTimer_;
};

} // namespace vigilo::platform
