#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace vigilo {

/// One choice of the duration menu.
struct DurationPreset {
    double minutes;
    std::string_view displayLabel; ///< on the closed menu, and read out as its value
    std::string_view menuLabel;    ///< in the open menu
};

/// The choices in the order of the menu; the last one means "until stopped".
inline constexpr std::array durationPresets{
    DurationPreset{30, "30 min", "30 minutes"},
    DurationPreset{60, "1 hour", "1 hour"},
    DurationPreset{120, "2 hours", "2 hours"},
    DurationPreset{240, "4 hours", "4 hours"},
    DurationPreset{480, "8 hours", "8 hours"},
    DurationPreset{510, "Until stopped", "Until stopped"},
};

/// What the closed menu shows: the preset's label, or else the number of minutes in words.
std::string durationLabel(double selectedMinutes);

/// Any number of minutes in words, e.g. "1 hr 30 min". A number below 510 that does not fit 64 bits
/// is a programming error.
std::string selectedDurationLabel(double selectedMinutes);

/// Truncates towards zero. A number that is not finite or does not fit is a programming error.
std::int64_t wholeMinutes(double minutes);

} // namespace vigilo
