#include "ui/components/GlowScene.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <QRgb>

namespace vigilo {
namespace {

/// The mean of the red of all pixels.
double meanRed(const QImage& image) {
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            sum += qRed(image.pixel(x, y));
        }
    }
    return sum / (image.width() * image.height());
}

TEST(GlowScene, isItsGroundWithoutLights) {
    const QImage image = picture({.pixels = {20, 9}, .ground = QColor(10, 20, 30), .lights = {}});
    EXPECT_FALSE(image.hasAlphaChannel());
    EXPECT_GE(image.width(), 20);
    EXPECT_EQ(image.height(), 9);
    for (int x = 0; x < 20; ++x) {
        EXPECT_NEAR(qRed(image.pixel(x, 8)), 10, 1);
        EXPECT_NEAR(qGreen(image.pixel(x, 8)), 20, 1);
        EXPECT_NEAR(qBlue(image.pixel(x, 8)), 30, 1);
    }
}

TEST(GlowScene, mixesTwoStepsOfAColourThatLiesBetween) {
    const QImage image =
        picture({.pixels = {128, 128}, .ground = QColor::fromRgbF(0.1F, 0, 0), .lights = {}});
    EXPECT_NEAR(meanRed(image), 25.5, 0.1);
}

TEST(GlowScene, isBrightestWhereALightIs) {
    const QImage image = picture(
        {.pixels = {200, 100},
         .ground = Qt::black,
         .lights = {{.x = 150, .y = 50, .radius = 20, .deviation = 10, .color = Qt::white}}});
    EXPECT_GT(qRed(image.pixel(150, 50)), qRed(image.pixel(170, 50)) + 20);
    EXPECT_GT(qRed(image.pixel(170, 50)), qRed(image.pixel(190, 50)) + 20);
    EXPECT_LE(qRed(image.pixel(20, 50)), 1);
}

TEST(GlowScene, keepsALightOnNothingWithinItsOpacity) {
    const QImage image = picture(
        {.pixels = {48, 48},
         .ground = Qt::transparent,
         .lights = {{.x = 24, .y = 24, .radius = 4, .deviation = 5, .color = QColor(0, 255, 80)}}});
    ASSERT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < 48; ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < 48; ++x) {
            ASSERT_LE(qGreen(row[x]), qAlpha(row[x]));
        }
    }
}

} // namespace
} // namespace vigilo
