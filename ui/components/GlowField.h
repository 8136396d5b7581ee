#pragma once

#include "ui/components/Glow.h"
#include "ui/components/GlowScene.h"

#include <future>

#include <QColor>
#include <QQmlListProperty>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace vigilo {

/// A ground with soft lights. Its picture is computed beside the main thread as soon as its size is
/// known, while the rest of the window is made.
class GlowField : public QQuickItem {
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

Q_SIGNALS:
    void groundChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;

private:
    GlowScene scene() const;
    void compute();
    void begin();

    QColor ground_ = Qt::transparent;
    QList<Glow*> glows_;
    GlowScene scene_; ///< what was computed last
    std::future<QImage> picture_;
};

} // namespace vigilo
