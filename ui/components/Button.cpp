#include "ui/components/Button.h"

#include <utility>

namespace vigilo {

namespace {

bool isEnter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

Button::Button(QQuickItem* parent) : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptHoverEvents(true);
    setActiveFocusOnTab(true);
}

void Button::setBackground(QQuickItem* background) {
    if (background != background_) {
        adopt(background_, background);
        if (background != nullptr) {
            background->setZ(-1);
        }
        Q_EMIT backgroundChanged();
    }
}

void Button::setContentItem(QQuickItem* contentItem) {
    if (contentItem != contentItem_) {
        adopt(contentItem_, contentItem);
        if (contentItem != nullptr) {
            connect(contentItem, &QQuickItem::implicitWidthChanged, this, &Button::wantRoom);
            connect(contentItem, &QQuickItem::implicitHeightChanged, this, &Button::wantRoom);
        }
        wantRoom();
        Q_EMIT contentItemChanged();
    }
}

void Button::setHorizontalPadding(double padding) {
    if (std::exchange(horizontalPadding_, padding) != padding) {
        wantRoom();
        Q_EMIT paddingChanged();
    }
}

void Button::setVerticalPadding(double padding) {
    if (std::exchange(verticalPadding_, padding) != padding) {
        wantRoom();
        Q_EMIT paddingChanged();
    }
}

void Button::adopt(QPointer<QQuickItem>& place, QQuickItem* item) {
    if (place) {
        place->setParentItem(nullptr);
        disconnect(place, nullptr, this, nullptr);
    }
    place = item;
    if (item != nullptr) {
        item->setParentItem(this);
    }
    layOut();
}

/// As much as the content wants, and the padding around it.
void Button::wantRoom() {
    if (contentItem_) {
        setImplicitSize(contentItem_->implicitWidth() + 2 * horizontalPadding_,
                        contentItem_->implicitHeight() + 2 * verticalPadding_);
    }
    layOut();
}

void Button::layOut() {
    if (background_) {
        background_->setSize(size());
    }
    if (contentItem_) {
        contentItem_->setPosition({horizontalPadding_, verticalPadding_});
        contentItem_->setSize(
            QSizeF(width() - 2 * horizontalPadding_, height() - 2 * verticalPadding_));
    }
}

bool Button::contains(const QPointF& point) const {
    return boundingRect().adjusted(-reach_, -reach_, reach_, reach_).contains(point);
}

void Button::geometryChange(const QRectF& after, const QRectF& before) {
    QQuickItem::geometryChange(after, before);
    layOut();
}

void Button::mousePressEvent(QMouseEvent* event) {
    if (takesFocusByPointer_) {
        forceActiveFocus(Qt::MouseFocusReason);
    }
    setDown(true);
    event->accept();
}

void Button::mouseMoveEvent(QMouseEvent* event) {
    setDown(contains(event->position()));
}

void Button::mouseReleaseEvent(QMouseEvent* event) {
    const bool isPressed = isDown_ && contains(event->position());
    setDown(false);
    if (isPressed) {
        Q_EMIT clicked();
    }
}

void Button::mouseUngrabEvent() {
    setDown(false);
}

void Button::hoverEnterEvent(QHoverEvent*) {
    setHovered(true);
}

void Button::hoverLeaveEvent(QHoverEvent*) {
    setHovered(false);
}

void Button::keyPressEvent(QKeyEvent* event) {
    if (isEnter(*event)) {
        if (!isRepeated(*event)) {
            Q_EMIT clicked();
        }
    } else if (event->key() == Qt::Key_Space) {
        if (!event->isAutoRepeat()) {
            setDown(true);
        }
    } else {
        event->ignore();
    }
}

void Button::keyReleaseEvent(QKeyEvent* event) {
    if (isEnter(*event)) {
        releasedKey_ = event->key();
        releaseTime_ = event->timestamp();
    } else if (event->key() == Qt::Key_Space) {
        if (!event->isAutoRepeat() && isDown_) {
            setDown(false);
            Q_EMIT clicked();
        }
    } else {
        event->ignore();
    }
}

/// An X server repeats a key as a release and a press, which the toolkit does not always see
/// through when it is busy. No finger is that fast.
bool Button::isRepeated(const QKeyEvent& event) const {
    constexpr quint64 fastest = 30;
    return event.isAutoRepeat() ||
           (event.key() == releasedKey_ && event.timestamp() - releaseTime_ < fastest);
}

void Button::focusInEvent(QFocusEvent* event) {
    setVisualFocus(event->reason() == Qt::TabFocusReason ||
                   event->reason() == Qt::BacktabFocusReason ||
                   event->reason() == Qt::ShortcutFocusReason);
    // It tells the screen reader.
    QQuickItem::focusInEvent(event);
}

void Button::focusOutEvent(QFocusEvent*) {
    setVisualFocus(false);
    setDown(false);
}

void Button::itemChange(ItemChange change, const ItemChangeData& value) {
    const bool isGone =
        (change == ItemEnabledHasChanged || change == ItemVisibleHasChanged) && !value.boolValue;
    if (isGone) {
        setDown(false);
        setHovered(false);
    }
    QQuickItem::itemChange(change, value);
}

void Button::setDown(bool isDown) {
    if (std::exchange(isDown_, isDown) != isDown) {
        Q_EMIT downChanged();
    }
}

void Button::setHovered(bool isHovered) {
    if (std::exchange(isHovered_, isHovered) != isHovered) {
        Q_EMIT hoveredChanged();
    }
}

void Button::setVisualFocus(bool hasVisualFocus) {
    if (std::exchange(hasVisualFocus_, hasVisualFocus) != hasVisualFocus) {
        Q_EMIT visualFocusChanged();
    }
}

} // namespace vigilo
