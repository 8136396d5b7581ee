#pragma once

#include <vector>

#include <QColor>
#include <QImage>
#include <QSize>

namespace vigilo {

/// What a GlowField shows, in pixels: soft lights, one over the other, on a ground.
struct GlowScene {
    struct Light {
        double x; ///< of its centre
        double y;
        double radius;    ///< > 0, of the disc before its blur
        double deviation; ///< > 0, the blur's standard deviation
        QColor color;

        bool operator==(const Light&) const = default;
    };

    QSize pixels;
    QColor ground;
    std::vector<Light> lights;

    bool operator==(const GlowScene&) const = default;
};

/// Dithered, so that no bands show in its slow gradients. Up to seven columns wider than the scene;
/// null without memory for it. Any thread.
QImage picture(const GlowScene& scene);

} // namespace vigilo
