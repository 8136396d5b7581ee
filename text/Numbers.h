#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vigilo {

/// A whole decimal integer: an optional sign and digits, nothing else. None for any other text and
/// for what does not fit.
std::optional<std::int64_t> decimalInteger(std::string_view text);

/// A whole decimal floating-point number with "." as its decimal point, whatever the locale. None
/// for any other text; "nan" and "inf" are numbers.
std::optional<double> floatingPoint(std::string_view text);

} // namespace vigilo
