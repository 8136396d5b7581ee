#include "platform/qt/tray/MenuWindow.h"

#include "platform/qt/ContentView.h"
#include "platform/qt/QtWindows.h"
#include "platform/qt/frame/MenuModel.h"

#include <algorithm>

#include <QMouseEvent>
#include <QScreen>

namespace vigilo::platform {

namespace {

/// A side of the menu along one axis: from the place on if there is room, else back from it.
int side(int place, int length, int first, int last) {
    const int wanted = place + length <= last + 1 ? place : place - length;
    return std::max(first, wanted);
}

} // namespace

MenuWindow::MenuWindow(QtWindows& windows, MenuModel& model)
    : model_(model),
      view_(windows.makePanel(QStringLiteral("Vigilo"), Qt::Popup, "Frame/MenuPanel", &model)) {
    view_->installEventFilter(this);
}

MenuWindow::~MenuWindow() = default;

void MenuWindow::open(const QPoint& place) {
    model_.prepare();
    view_->fitToContent();
    QScreen* const under = view_->screen()->virtualSiblingAt(place);
    const QRect display = (under == nullptr ? view_->screen() : under)->geometry();
    view_->setPosition(side(place.x(), view_->width(), display.left(), display.right()),
                       side(place.y(), view_->height(), display.top(), display.bottom()));
    view_->show();
    view_->requestActivate();
    // Presses beside it arrive here, and keys whatever window the manager thinks active.
    view_->setMouseGrabEnabled(true);
    view_->setKeyboardGrabEnabled(true);
}

bool MenuWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress) {
        const auto* const press = static_cast<const QMouseEvent*>(event);
        if (!QRect(QPoint(), view_->size()).contains(press->position().toPoint())) {
            view_->hide();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace vigilo::platform
