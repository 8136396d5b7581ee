#include "ui/components/GlowField.h"

#include <cmath>
#include <utility>

#include <QQuickWindow>
#include <QSGImageNode>

namespace vigilo {

GlowField::GlowField(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void GlowField::setGround(const QColor& ground) {
    if (ground != ground_) {
        ground_ = ground;
        compute();
        Q_EMIT groundChanged();
    }
}

QQmlListProperty<Glow> GlowField::glows() {
    return {this, &glows_};
}

void GlowField::componentComplete() {
    QQuickItem::componentComplete();
    for (const Glow* glow : glows_) {
        connect(glow, &Glow::changed, this, &GlowField::compute);
    }
    compute();
}

void GlowField::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    compute();
}

void GlowField::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange || change == ItemVisibleHasChanged ||
        change == ItemDevicePixelRatioHasChanged) {
        compute();
    }
}

GlowScene GlowField::scene() const {
    const double scale = window()->effectiveDevicePixelRatio();
    GlowScene scene{.pixels = QSize(static_cast<int>(std::ceil(width() * scale)),
                                    static_cast<int>(std::ceil(height() * scale))),
                    .ground = ground_,
                    .lights = {}};
    for (const Glow* glow : glows_) {
        scene.lights.push_back({.x = (width() / 2 + glow->offsetX) * scale,
                                .y = (height() / 2 + glow->offsetY) * scale,
                                .radius = glow->diameter / 2 * scale,
                                .deviation = glow->blur * scale,
                                .color = glow->color});
    }
    return scene;
}

void GlowField::compute() {
    if (!isComponentComplete() || window() == nullptr || !isVisible() || size().isEmpty()) {
        return;
    }
    GlowScene now = scene();
    if (now == scene_) {
        return;
    }
    scene_ = std::move(now);
    begin();
    update();
}

/// Where no thread can be had, the picture is computed when it is asked for.
void GlowField::begin() {
    picture_ = std::async([scene = scene_] { return picture(scene); });
}

QSGNode* GlowField::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
    if (!picture_.valid()) {
        if (node != nullptr || scene_.pixels.isEmpty()) {
            return node;
        }
        begin(); // the window has dropped what it had
    }
    const QImage picture = picture_.get();
    if (picture.isNull()) {
        return node;
    }
    QSGTexture* const texture = window()->createTextureFromImage(picture);
    auto* image = static_cast<QSGImageNode*>(node);
    if (image == nullptr) {
        image = window()->createImageNode();
        image->setOwnsTexture(true);
    }
    image->setTexture(texture);
    image->setSourceRect(QRectF(QPointF(), scene_.pixels));
    image->setRect(
        QRectF(QPointF(), QSizeF(scene_.pixels) / window()->effectiveDevicePixelRatio()));
    return image;
}

} // namespace vigilo
