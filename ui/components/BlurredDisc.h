#pragma once

#include <cstddef>
#include <vector>

namespace vigilo {

/// The profile of an opaque disc under a Gaussian blur: how much of it is left at a distance from
/// its centre.
class BlurredDisc {
public:
    /// Both in the same unit of length and > 0; `deviation` is the Gaussian's standard deviation.
    BlurredDisc(double radius, double deviation);

    /// Opacity from 0 to 1 at a distance from the centre (>= 0).
    double opacity(double distance) const;

    /// Beyond this distance the disc is invisible.
    double extent() const { return extent_; }

private:
    double extent_;
    std::vector<double> samples_; ///< at even distances from 0 to the extent
};

} // namespace vigilo
