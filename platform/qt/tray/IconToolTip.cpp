#include "platform/qt/tray/IconToolTip.h"

#include <algorithm>
#include <chrono>

#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QScreen>

namespace vigilo::platform {

namespace {
using namespace std::chrono_literals;
constexpr auto restTime = 700ms;
constexpr int margin = 6;
} // namespace

IconToolTip::IconToolTip() {
    setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus |
             Qt::WindowTransparentForInput);
    delay_.setSingleShot(true);
    delay_.setInterval(restTime);
    delay_.callOnTimeout(this, &IconToolTip::showBeside);
}

void IconToolTip::setText(const QString& text) {
    text_ = text;
    if (isVisible()) {
        showBeside();
        update();
    }
}

void IconToolTip::showSoon(const QRect& icon) {
    icon_ = icon;
    delay_.start();
}

void IconToolTip::hideNow() {
    delay_.stop();
    hide();
}

void IconToolTip::showBeside() {
    const QFontMetrics metrics(QGuiApplication::font());
    const QSize size(metrics.horizontalAdvance(text_) + 2 * margin, metrics.height() + 2 * margin);
    const QScreen* const under = screen()->virtualSiblingAt(icon_.center());
    const QRect display = (under == nullptr ? screen() : under)->geometry();
    const int below = icon_.bottom() + margin;
    const int top =
        below + size.height() <= display.bottom() ? below : icon_.top() - margin - size.height();
    const int left = std::clamp(icon_.left(), display.left(),
                                std::max(display.left(), display.right() - size.width()));
    setGeometry(QRect(QPoint(left, top), size));
    show();
}

void IconToolTip::paintEvent(QPaintEvent*) {
    const QPalette palette = QGuiApplication::palette();
    QPainter painter(this);
    const QRect area(QPoint(), size());
    painter.fillRect(area, palette.toolTipBase());
    painter.setPen(palette.toolTipText().color());
    painter.drawText(area, Qt::AlignCenter, text_);
}

} // namespace vigilo::platform
