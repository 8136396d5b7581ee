#include "ui/components/GlowField.h"

#include "ui/components/BlurredDisc.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include <QImage>
#include <QPainter>

namespace vigilo {

namespace {

/// A light in the pixels of the picture.
struct Light {
    BlurredDisc disc;
    double x;
    double y;
    QColor color;
};

/// Red, green, blue and opacity, premultiplied, 0 to 1.
using Pixel = std::array<double, 4>;

Pixel premultiplied(const QColor& color, double opacity) {
    const double alpha = static_cast<double>(color.alphaF()) * opacity;
    return {static_cast<double>(color.redF()) * alpha, static_cast<double>(color.greenF()) * alpha,
            static_cast<double>(color.blueF()) * alpha, alpha};
}

void blend(Pixel& under, const Pixel& over) {
    for (std::size_t index = 0; index < under.size(); ++index) {
        under[index] = over[index] + under[index] * (1 - over[3]);
    }
}

/// Even noise in 0 to 1 that is the same in every run; the mixing steps are those of a common
/// 32-bit integer hash (two rounds of multiply and xor-shift).
double noise(std::uint32_t x, std::uint32_t y) {
    std::uint32_t hash = x * 0x9E3779B1U + y * 0x85EBCA77U;
    hash = (hash ^ (hash >> 16)) * 0x7FEB352DU;
    hash = (hash ^ (hash >> 15)) * 0x846CA68BU;
    hash ^= hash >> 16;
    return static_cast<double>(hash) / 4294967296.0;
}

unsigned dithered(double value, double threshold) {
    return static_cast<unsigned>(std::floor(std::min(value, 1.0) * 255 + threshold));
}

} // namespace

GlowField::GlowField(QQuickItem* parent) : QQuickPaintedItem(parent) {}

void GlowField::setGround(const QColor& ground) {
    if (ground != ground_) {
        ground_ = ground;
        setOpaquePainting(ground.alpha() == 255);
        update();
        Q_EMIT groundChanged();
    }
}

QQmlListProperty<Glow> GlowField::glows() {
    return {this, &glows_};
}

void GlowField::paint(QPainter* painter) {
    // The toolkit hands out a scaled painter on a device that knows nothing of the display's scale.
    const double scale = painter->device()->devicePixelRatioF() * painter->worldTransform().m11();
    const QSize pixels(static_cast<int>(std::ceil(width() * scale)),
                       static_cast<int>(std::ceil(height() * scale)));
    std::vector<Light> lights;
    for (const Glow* glow : glows_) {
        lights.push_back({.disc = BlurredDisc(glow->diameter / 2 * scale, glow->blur * scale),
                          .x = (width() / 2 + glow->offsetX) * scale,
                          .y = (height() / 2 + glow->offsetY) * scale,
                          .color = glow->color});
    }
    const Pixel ground = premultiplied(ground_, 1);
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < pixels.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < pixels.width(); ++x) {
            Pixel pixel = ground;
            for (const Light& light : lights) {
                const double distance = std::hypot(x + 0.5 - light.x, y + 0.5 - light.y);
                if (distance < light.disc.extent()) {
                    blend(pixel, premultiplied(light.color, light.disc.opacity(distance)));
                }
            }
            const double threshold =
                noise(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y));
            // One threshold for all four keeps a premultiplied colour within its opacity.
            line[x] = dithered(pixel[3], threshold) << 24 | dithered(pixel[0], threshold) << 16 |
                      dithered(pixel[1], threshold) << 8 | dithered(pixel[2], threshold);
        }
    }
    image.setDevicePixelRatio(scale);
    painter->setCompositionMode(QPainter::CompositionMode_Source);
    painter->drawImage(QPointF(0, 0), image);
}

} // namespace vigilo
