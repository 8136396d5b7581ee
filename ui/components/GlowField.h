#pragma once

#include "ui/components/Glow.h"

#include <QColor>
#include <QQmlListProperty>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace vigilo {

/// A ground with soft lights, painted once for a size and dithered, so that no bands show in its
/// slow gradients.
class GlowField : public QQuickPaintedItem {
    Q_OBJECT
    Q_PROPERTY(QColor ground READ ground WRITE setGround NOTIFY groundChanged)
    Q_PROPERTY(QQmlListProperty<vigilo::Glow> glows READ glows CONSTANT)
    Q_CLASSINFO("DefaultProperty", "glows")
    QML_ELEMENT

public:
    explicit GlowField(QQuickItem* parent = nullptr);

    /// May be transparent; then only the lights are painted.
    QColor ground() const { return ground_; }
    void setGround(const QColor& ground);

    QQmlListProperty<Glow> glows();

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void groundChanged();

private:
    QColor ground_ = Qt::transparent;
    QList<Glow*> glows_;
};

} // namespace vigilo
