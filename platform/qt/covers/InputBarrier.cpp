#include "platform/qt/covers/InputBarrier.h"

#include "platform/qt/covers/CoverPlacement.h"

#include <QGuiApplication>
#include <QPointerEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QWindow>

namespace vigilo::platform {

namespace {

/// What was begun before the cover came is let end, lest a button stays down.
bool beginsInput(const QEvent& event) {
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::TabletPress:
        return true;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
        return static_cast<const QTouchEvent&>(event).isBeginEvent();
    default:
        return false;
    }
}

/// Of a window or of an item: whether a key is a shortcut is asked of the one that has the focus.
const QWindow* windowOf(const QObject* receiver) {
    if (const auto* const item = qobject_cast<const QQuickItem*>(receiver)) {
        return item->window();
    }
    return qobject_cast<const QWindow*>(receiver);
}

} // namespace

std::shared_ptr<InputBarrier> InputBarrier::raise() {
    static std::weak_ptr<InputBarrier> inUse;
    if (auto barrier = inUse.lock()) {
        return barrier;
    }
    std::shared_ptr<InputBarrier> barrier(new InputBarrier);
    inUse = barrier;
    return barrier;
}

InputBarrier::InputBarrier() {
    for (QWindow* const window : QGuiApplication::topLevelWindows()) {
        if (window->type() == Qt::Popup) {
            window->hide();
        }
    }
    qGuiApp->installEventFilter(this);
}

bool InputBarrier::eventFilter(QObject* watched, QEvent* event) {
    // The covers have none. A key that the cover gets is one of the window below for the toolkit,
    // when it takes that for the one with the focus.
    if (event->type() == QEvent::Shortcut) {
        return true;
    }
    if (!beginsInput(*event)) {
        return false;
    }
    const QWindow* const window = windowOf(watched);
    if (window == nullptr || isCover(window)) {
        return false;
    }
    // Otherwise the toolkit goes on to look whether the key is a shortcut.
    event->accept();
    return true;
}

} // namespace vigilo::platform
