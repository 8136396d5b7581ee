#include "ui/components/BlurredDisc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace vigilo {
namespace {

float opacity(const BlurredDisc& disc, double distance) {
    return disc.opacity(static_cast<float>(distance * distance));
}

TEST(BlurredDisc, hasTheOpacityOfTheIntegralAtItsCentre) {
    // In the centre the integral is 1 - exp(-r^2 / (2 s^2)).
    for (const double deviation : {5.0, 85.0, 120.0}) {
        const double radius = 195;
        const double expected = 1 - std::exp(-radius * radius / (2 * deviation * deviation));
        EXPECT_NEAR(BlurredDisc(radius, deviation).opacity(0), expected, 0.001) << deviation;
    }
}

TEST(BlurredDisc, keepsTheDiscsWholeLight) {
    const BlurredDisc disc(170, 95);
    double light = 0;
    for (int ring = 0; ring < disc.extent(); ++ring) {
        const double distance = ring + 0.5;
        light += 2 * std::numbers::pi * distance * opacity(disc, distance);
    }
    EXPECT_NEAR(light / (std::numbers::pi * 170 * 170), 1, 0.005);
}

TEST(BlurredDisc, fadesOutwardsAndEnds) {
    const BlurredDisc disc(195, 85);
    for (int distance = 1; distance < disc.extent(); ++distance) {
        EXPECT_LE(opacity(disc, distance), opacity(disc, distance - 1) + 1e-6F);
    }
    EXPECT_LT(opacity(disc, disc.extent() - 0.01), 0.001);
    EXPECT_EQ(opacity(disc, disc.extent() + 0.1), 0);
}

} // namespace
} // namespace vigilo
