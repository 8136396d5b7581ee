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

/// A light in the pixels of the picture; red, green, blue and opacity, premultiplied, 0 to 1.
struct Light {
    BlurredDisc disc;
    float x;
    float y;
    std::array<float, 4> color;
};

std::array<float, 4> premultiplied(const QColor& color) {
    const float alpha = color.alphaF();
    return {color.redF() * alpha, color.greenF() * alpha, color.blueF() * alpha, alpha};
}

/// Premultiplied, 0 to 1.
using Pixel = std::array<float, 4>;

/// The lights on their ground, computed at every few pixels only: they are so smooth that what lies
/// between can be interpolated without a difference of a tenth of a step of any channel.
class CoarsePicture {
public:
    static constexpr int spacing = 8;

    CoarsePicture(QSize pixels, const Pixel& ground, const std::vector<Light>& lights)
        : columns_(static_cast<std::size_t>(pixels.width() / spacing + 2)),
          pixels_(columns_ * static_cast<std::size_t>(pixels.height() / spacing + 2), ground) {
        for (const Light& light : lights) {
            shine(light);
        }
    }

    /// The points of the row at `y`, one every `spacing` pixels.
    void interpolateRow(int y, std::vector<Pixel>& row) const {
        const auto above = static_cast<std::size_t>(y / spacing) * columns_;
        const float part = static_cast<float>(y % spacing) / spacing;
        row.resize(columns_);
        for (std::size_t column = 0; column < columns_; ++column) {
            row[column] =
                between(pixels_[above + column], pixels_[above + columns_ + column], part);
        }
    }

    static Pixel between(const Pixel& first, const Pixel& second, float part) {
        Pixel pixel{};
        for (std::size_t channel = 0; channel < pixel.size(); ++channel) {
            pixel[channel] = first[channel] + (second[channel] - first[channel]) * part;
        }
        return pixel;
    }

private:
    void shine(const Light& light) {
        for (std::size_t index = 0; index < pixels_.size(); ++index) {
            const std::size_t column = index % columns_;
            const std::size_t line = index / columns_;
            const float across = static_cast<float>(column * spacing) + 0.5F - light.x;
            const float down = static_cast<float>(line * spacing) + 0.5F - light.y;
            const float opacity = light.disc.opacity(across * across + down * down);
            const float rest = 1 - light.color[3] * opacity;
            Pixel& pixel = pixels_[index];
            for (std::size_t channel = 0; channel < pixel.size(); ++channel) {
                pixel[channel] = light.color[channel] * opacity + pixel[channel] * rest;
            }
        }
    }

    std::size_t columns_;
    std::vector<Pixel> pixels_;
};

/// Even noise of 16 bits in a square that is repeated; the same in every run. The mixing steps are
/// those of a common 32-bit integer hash (two rounds of multiply and xor-shift).
class Noise {
public:
    Noise() {
        std::uint32_t count = 0;
        for (auto& row : values_) {
            for (std::uint32_t& value : row) {
                std::uint32_t hash = ++count * 0x9E3779B1U;
                hash = (hash ^ (hash >> 16)) * 0x7FEB352DU;
                hash = (hash ^ (hash >> 15)) * 0x846CA68BU;
                value = (hash ^ (hash >> 16)) >> 16;
            }
        }
    }

    /// The values of the pixels from (x, y) on, as many as lie between two points.
    const std::uint32_t* at(int x, int y) const {
        return &values_[static_cast<std::size_t>(y % side)][static_cast<std::size_t>(x % side)];
    }

private:
    static constexpr int side = 64;
    static_assert(side % CoarsePicture::spacing == 0);
    std::array<std::array<std::uint32_t, side>, side> values_{};
};

/// A channel along the pixels between two points, in steps of a 65536th of a channel's step: whole
/// numbers, so that the compiler can take several pixels at a time.
struct Ramp {
    Ramp(float first, float second)
        : start(fixed(first)), step((fixed(second) - start) / CoarsePicture::spacing) {}

    static std::int32_t fixed(float value) {
        return static_cast<std::int32_t>(std::min(value, 1.0F) * 255 * 65536);
    }

    std::uint32_t at(int pixel, std::uint32_t threshold) const {
        return (static_cast<std::uint32_t>(start + step * pixel) + threshold) >> 16;
    }

    std::int32_t start;
    std::int32_t step;
};

/// The pixels from one point of a row to the next, dithered.
void paintSpan(const Pixel& first, const Pixel& second, const std::uint32_t* noise, QRgb* pixels) {
    const Ramp red(first[0], second[0]);
    const Ramp green(first[1], second[1]);
    const Ramp blue(first[2], second[2]);
    const Ramp alpha(first[3], second[3]);
    for (int pixel = 0; pixel < CoarsePicture::spacing; ++pixel) {
        // One threshold for all four keeps a premultiplied colour within its opacity.
        const std::uint32_t threshold = noise[pixel];
        pixels[pixel] = alpha.at(pixel, threshold) << 24 | red.at(pixel, threshold) << 16 |
                        green.at(pixel, threshold) << 8 | blue.at(pixel, threshold);
    }
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
                          .x = static_cast<float>((width() / 2 + glow->offsetX) * scale),
                          .y = static_cast<float>((height() / 2 + glow->offsetY) * scale),
                          .color = premultiplied(glow->color)});
    }
    const CoarsePicture picture(pixels, premultiplied(ground_), lights);
    painter->setCompositionMode(QPainter::CompositionMode_Source);
    // Strip by strip: a whole picture would cost more for its memory than for its pixels.
    constexpr int stripHeight = 16;
    constexpr int spacing = CoarsePicture::spacing;
    const int spans = (pixels.width() + spacing - 1) / spacing;
    QImage strip(spans * spacing, stripHeight, QImage::Format_ARGB32_Premultiplied);
    strip.setDevicePixelRatio(scale);
    const Noise noise;
    std::vector<Pixel> points;
    for (int top = 0; top < pixels.height(); top += stripHeight) {
        const int height = std::min(stripHeight, pixels.height() - top);
        for (int y = 0; y < height; ++y) {
            picture.interpolateRow(top + y, points);
            auto* pixel = reinterpret_cast<QRgb*>(strip.scanLine(y));
            for (int span = 0; span < spans; ++span, pixel += spacing) {
                const auto point = static_cast<std::size_t>(span);
                paintSpan(points[point], points[point + 1], noise.at(span * spacing, top + y),
                          pixel);
            }
        }
        painter->drawImage(QPointF(0, top / scale), strip, QRectF(0, 0, pixels.width(), height));
    }
}

} // namespace vigilo
