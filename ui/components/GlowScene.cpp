#include "ui/components/GlowScene.h"

#include "ui/components/BlurredDisc.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vigilo {

namespace {

/// Red, green, blue and opacity, premultiplied, 0 to 1.
using Pixel = std::array<float, 4>;

Pixel premultiplied(const QColor& color) {
    const float alpha = color.alphaF();
    return {color.redF() * alpha, color.greenF() * alpha, color.blueF() * alpha, alpha};
}

/// The lights on their ground, computed at every few pixels only: they are so smooth that what lies
/// between can be interpolated without a difference of a tenth of a step of any channel.
class CoarsePicture {
public:
    static constexpr int spacing = 8;

    explicit CoarsePicture(const GlowScene& scene)
        : columns_(static_cast<std::size_t>(scene.pixels.width() / spacing + 2)),
          pixels_(columns_ * static_cast<std::size_t>(scene.pixels.height() / spacing + 2),
                  premultiplied(scene.ground)) {
        for (const GlowScene::Light& light : scene.lights) {
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
    void shine(const GlowScene::Light& light) {
        const BlurredDisc disc(light.radius, light.deviation);
        const Pixel color = premultiplied(light.color);
        const auto x = static_cast<float>(light.x);
        const auto y = static_cast<float>(light.y);
        for (std::size_t index = 0; index < pixels_.size(); ++index) {
            const std::size_t column = index % columns_;
            const std::size_t line = index / columns_;
            const float across = static_cast<float>(column * spacing) + 0.5F - x;
            const float down = static_cast<float>(line * spacing) + 0.5F - y;
            const float opacity = disc.opacity(across * across + down * down);
            const float rest = 1 - color[3] * opacity;
            Pixel& pixel = pixels_[index];
            for (std::size_t channel = 0; channel < pixel.size(); ++channel) {
                pixel[channel] = color[channel] * opacity + pixel[channel] * rest;
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

QImage picture(const GlowScene& scene) {
    const QSize pixels = scene.pixels;
    constexpr int spacing = CoarsePicture::spacing;
    const int spans = (pixels.width() + spacing - 1) / spacing;
    // Whole spans; what is too much at the right is not shown.
    QImage image(spans * spacing, pixels.height(),
                 scene.ground.alpha() == 255 ? QImage::Format_RGB32
                                             : QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return image;
    }
    const CoarsePicture coarse(scene);
    const Noise noise;
    std::vector<Pixel> points;
    for (int y = 0; y < pixels.height(); ++y) {
        coarse.interpolateRow(y, points);
        auto* pixel = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int span = 0; span < spans; ++span, pixel += spacing) {
            const auto point = static_cast<std::size_t>(span);
            paintSpan(points[point], points[point + 1], noise.at(span * spacing, y), pixel);
        }
    }
    return image;
}

} // namespace vigilo
