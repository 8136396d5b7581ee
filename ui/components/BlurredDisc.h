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

    /// Opacity from 0 to 1 at a distance from the centre, given as its square (>= 0), since whoever
    /// asks for every pixel of a picture has no time for roots.
    float opacity(float squaredDistance) const {
        const float position = squaredDistance * samplesPerSquare_;
        const auto index = static_cast<std::size_t>(position);
        if (index + 1 >= samples_.size()) {
            return 0;
        }
        const float part = position - static_cast<float>(index);
        return samples_[index] * (1 - part) + samples_[index + 1] * part;
    }

    /// Beyond this distance the disc is invisible.
    double extent() const { return extent_; }

private:
    double extent_;
    float samplesPerSquare_;
    std::vector<float> samples_; ///< at even squares of the distance, from 0 to the extent's
};

} // namespace vigilo
