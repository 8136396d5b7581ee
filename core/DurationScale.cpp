#include "core/DurationScale.h"

#include "platform/Fatal.h"

#include <algorithm>
#include <cmath>

namespace vigilo::DurationScale {

namespace {
constexpr std::int64_t minutesPerStep = 30;
}

std::int64_t minutesForStep(std::int64_t step) {
    if (step >= finalStep) {
        return untilStoppedMinutes;
    }
    return std::max<std::int64_t>(step, 0) * minutesPerStep;
}

std::int64_t stepForMinutes(double minutes) {
    if (minutes >= static_cast<double>(untilStoppedMinutes)) {
        return finalStep;
    }
    if (!std::isfinite(minutes)) {
        fatal("a duration that is not a number has no step");
    }
    const double step = std::round(minutes / static_cast<double>(minutesPerStep));
    return static_cast<std::int64_t>(std::clamp(step, 0.0, static_cast<double>(finalStep - 1)));
}

} // namespace vigilo::DurationScale
