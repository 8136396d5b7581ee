#include "ui/components/BlurredDisc.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vigilo {

namespace {

constexpr std::size_t sampleCount = 129;
constexpr double visibleDeviations = 4; ///< beyond these a Gaussian is below 1/10 000

/// The value at x of the polynomial with these coefficients, the constant one first.
template <std::size_t count>
double polynomial(const std::array<double, count>& coefficients, double x) {
    double value = 0;
    for (auto coefficient = coefficients.rbegin(); coefficient != coefficients.rend();
         ++coefficient) {
        value = value * x + *coefficient;
    }
    return value;
}

/// exp(-x) times the modified Bessel function of order zero, for x >= 0, to seven digits
/// (Abramowitz and Stegun, 9.8.1 and 9.8.2).
double scaledBessel(double x) {
    constexpr double border = 3.75;
    constexpr std::array below{1.0,       3.5156229, 3.0899424, 1.2067492,
                               0.2659732, 0.0360768, 0.0045813};
    constexpr std::array above{0.39894228,  0.01328592, 0.00225319,  -0.00157565, 0.00916281,
                               -0.02057706, 0.02635537, -0.01647633, 0.00392377};
    if (x < border) {
        const double part = x / border;
        return std::exp(-x) * polynomial(below, part * part);
    }
    return polynomial(above, border / x) / std::sqrt(x);
}

/// The two-dimensional convolution in polar coordinates: the integral over the disc's rings.
double blurred(double radius, double deviation, double distance) {
    const double variance = deviation * deviation;
    // Rings far thinner than the blur.
    const int steps = static_cast<int>(std::max(32.0, std::ceil(radius / deviation * 6)));
    const double step = radius / steps;
    double sum = 0;
    for (int index = 0; index < steps; ++index) {
        const double ring = (index + 0.5) * step;
        const double apart = distance - ring;
        sum += ring / variance * std::exp(-apart * apart / (2 * variance)) *
               scaledBessel(distance * ring / variance) * step;
    }
    return std::min(sum, 1.0);
}

} // namespace

BlurredDisc::BlurredDisc(double radius, double deviation)
    : extent_(radius + visibleDeviations * deviation),
      samplesPerSquare_(static_cast<float>((sampleCount - 1) / (extent_ * extent_))),
      samples_(sampleCount) {
    for (std::size_t index = 0; index < sampleCount; ++index) {
        const double part = static_cast<double>(index) / static_cast<double>(sampleCount - 1);
        samples_[index] = static_cast<float>(blurred(radius, deviation, extent_ * std::sqrt(part)));
    }
}

} // namespace vigilo
