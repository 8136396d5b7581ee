#include "text/Numbers.h"

#include <charconv>
#include <system_error>

namespace vigilo {

namespace {

/// Reads the whole text, allowing a plus sign, which std::from_chars does not.
template <typename Value>
std::optional<Value> wholeNumber(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    Value value{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc{} || result.ptr != end) {
        return std::nullopt;
    }
    return value;
}

} // namespace

std::optional<std::int64_t> decimalInteger(std::string_view text) {
    return wholeNumber<std::int64_t>(text);
}

std::optional<double> floatingPoint(std::string_view text) {
    return wholeNumber<double>(text);
}

} // namespace vigilo
