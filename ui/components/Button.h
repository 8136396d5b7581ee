#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace vigilo {

/// What a button does, without a look of its own: pressed by pointer, finger, Space, Return and
/// Enter, once however long a key is held; it knows whether the keyboard's focus should be shown.
/// A finger within `reach` of it counts as on it. Its background has its size, its content what the
/// padding leaves. The toolkit's own template of a button would do, at the price of a large library
/// at the start.
class Button : public QQuickItem {
    Q_OBJECT
    Q_PROPERTY(QString text MEMBER text_ NOTIFY textChanged)
    Q_PROPERTY(
        bool takesFocusByPointer MEMBER takesFocusByPointer_ NOTIFY takesFocusByPointerChanged)
    Q_PROPERTY(QQuickItem* background READ background WRITE setBackground NOTIFY backgroundChanged)
    Q_PROPERTY(
        QQuickItem* contentItem READ contentItem WRITE setContentItem NOTIFY contentItemChanged)
    Q_PROPERTY(double horizontalPadding READ horizontalPadding WRITE setHorizontalPadding NOTIFY
                   paddingChanged)
    Q_PROPERTY(
        double verticalPadding READ verticalPadding WRITE setVerticalPadding NOTIFY paddingChanged)
    Q_PROPERTY(double reach MEMBER reach_ NOTIFY reachChanged)
    Q_PROPERTY(bool down READ isDown NOTIFY downChanged)
    Q_PROPERTY(bool hovered READ isHovered NOTIFY hoveredChanged)
    Q_PROPERTY(bool visualFocus READ hasVisualFocus NOTIFY visualFocusChanged)
    QML_NAMED_ELEMENT(ButtonArea)

public:
    explicit Button(QQuickItem* parent = nullptr);

    QQuickItem* background() const { return background_.data(); }
    void setBackground(QQuickItem* background);
    QQuickItem* contentItem() const { return contentItem_.data(); }
    void setContentItem(QQuickItem* contentItem);
    double horizontalPadding() const { return horizontalPadding_; }
    void setHorizontalPadding(double padding);
    double verticalPadding() const { return verticalPadding_; }
    void setVerticalPadding(double padding);

    bool contains(const QPointF& point) const override;

    bool isDown() const { return isDown_; }
    bool isHovered() const { return isHovered_; }

    /// Whether it has the focus and got it by the keyboard.
    bool hasVisualFocus() const { return hasVisualFocus_; }

Q_SIGNALS:
    void clicked();
    void textChanged();
    void takesFocusByPointerChanged();
    void backgroundChanged();
    void contentItemChanged();
    void paddingChanged();
    void reachChanged();
    void downChanged();
    void hoveredChanged();
    void visualFocusChanged();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void geometryChange(const QRectF& after, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;

private:
    void adopt(QPointer<QQuickItem>& place, QQuickItem* item);
    void wantRoom();
    void layOut();
    bool isRepeated(const QKeyEvent& event) const;
    void setDown(bool isDown);
    void setHovered(bool isHovered);
    void setVisualFocus(bool hasVisualFocus);

    QString text_;
    QPointer<QQuickItem> background_;
    QPointer<QQuickItem> contentItem_;
    double horizontalPadding_ = 0;
    double verticalPadding_ = 0;
    double reach_ = 0;
    bool takesFocusByPointer_ = true;
    bool isDown_ = false;
    bool isHovered_ = false;
    bool hasVisualFocus_ = false;
    int releasedKey_ = 0;
    quint64 releaseTime_ = 0; ///< milliseconds, as events count them
};

} // namespace vigilo
