#pragma once

#include <cstdint>

/// The scale of session lengths: steps of 30 minutes up to 8 hours, then one last step that means
/// "until stopped".
namespace vigilo::DurationScale {

/// The until-stopped step.
inline constexpr std::int64_t finalStep = 17;

/// The number of minutes that stands for "until stopped" wherever a duration is held as a number;
/// larger numbers mean the same. It is no real length of 8.5 hours.
inline constexpr std::int64_t untilStoppedMinutes = 510;

/// Minutes for a step: 30 a step from 0 to 480, `untilStoppedMinutes` from `finalStep` on, 0 below
/// 0.
std::int64_t minutesForStep(std::int64_t step);

/// The nearest step, halves away from zero; only `untilStoppedMinutes` or more gives `finalStep`.
/// Not-a-number and minus infinity are programming errors and stop the process.
std::int64_t stepForMinutes(double minutes);

} // namespace vigilo::DurationScale
