#include "ui/DurationMenu.h"

#include "core/DurationScale.h"
#include "platform/Fatal.h"

#include <algorithm>

namespace vigilo {

std::string durationLabel(double selectedMinutes) {
    const auto preset = std::find_if(
        durationPresets.begin(), durationPresets.end(),
        [=](const DurationPreset& candidate) { return candidate.minutes == selectedMinutes; });
    return preset == durationPresets.end() ? selectedDurationLabel(selectedMinutes)
                                           : std::string(preset->displayLabel);
}

std::string selectedDurationLabel(double selectedMinutes) {
    if (selectedMinutes == 0) {
        return "0 min";
    }
    if (selectedMinutes >= static_cast<double>(DurationScale::untilStoppedMinutes)) {
        return "Until stopped ∞";
    }
    const std::int64_t minutes = wholeMinutes(selectedMinutes);
    if (minutes < 60) {
        return std::to_string(minutes) + " min";
    }
    const std::string hours = std::to_string(minutes / 60) + " hr";
    return minutes % 60 == 0 ? hours : hours + " " + std::to_string(minutes % 60) + " min";
}

std::int64_t wholeMinutes(double minutes) {
    // 2^63 is the first number too large; its negative is the last that fits.
    constexpr double limit = 9223372036854775808.0;
    if (!(minutes >= -limit && minutes < limit)) {
        fatal("a duration is not a number of minutes");
    }
    return static_cast<std::int64_t>(minutes);
}

} // namespace vigilo
