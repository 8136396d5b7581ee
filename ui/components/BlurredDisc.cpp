#include "ui/components/BlurredDisc.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vigilo {

namespace {

constexpr std::size_t sampleCount = 513;
constexpr int integrationSteps = 200;
constexpr double visibleDeviations = 4; ///< beyond these a Gaussian is below 1/10 000

/// exp(-x) times the modified Bessel function of order zero, for x >= 0; by its asymptotic series
/// where the function itself would overflow (Abramowitz and Stegun, 9.7.1).
double scaledBessel(double x) {
    if (x < 30) {
        return std::exp(-x) * std::cyl_bessel_i(0.0, x);
    }
    return (1 + 1 / (8 * x) + 9 / (128 * x * x)) / std::sqrt(2 * std::numbers::pi * x);
}

/// The two-dimensional convolution in polar coordinates: the integral over the disc's rings.
double blurred(double radius, double deviation, double distance) {
    const double variance = deviation * deviation;
    const double step = radius / integrationSteps;
    double sum = 0;
    for (int index = 0; index < integrationSteps; ++index) {
        const double ring = (index + 0.5) * step;
        const double apart = distance - ring;
        sum += ring / variance * std::exp(-apart * apart / (2 * variance)) *
               scaledBessel(distance * ring / variance) * step;
    }
    return std::min(sum, 1.0);
}

} // namespace

BlurredDisc::BlurredDisc(double radius, double deviation)
    : extent_(radius + visibleDeviations * deviation), samples_(sampleCount) {
    for (std::size_t index = 0; index < sampleCount; ++index) {
        const double distance =
            extent_ * static_cast<double>(index) / static_cast<double>(sampleCount - 1);
        samples_[index] = blurred(radius, deviation, distance);
    }
}

double BlurredDisc::opacity(double distance) const {
    if (distance >= extent_) {
        return 0;
    }
    const double position = distance / extent_ * static_cast<double>(sampleCount - 1);
    const auto index = static_cast<std::size_t>(position);
    const double part = position - static_cast<double>(index);
    return samples_[index] * (1 - part) + samples_[index + 1] * part;
}

} // namespace vigilo
