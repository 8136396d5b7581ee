#include "text/Words.h"

#include "text/Unicode.h"

#include <cstddef>

namespace vigilo {

std::optional<std::string_view> Words::next() {
    while (!rest_.empty()) {
        std::size_t length = 0;
        std::size_t separator = 0;
        while (length < rest_.size()) {
            const Decoded decoded = decodeFirst(rest_.substr(length));
            if (decoded.isValid && isWhiteSpace(decoded.codePoint)) {
                separator = decoded.length;
                break;
            }
            length += decoded.length;
        }
        const std::string_view word = rest_.substr(0, length);
        rest_.remove_prefix(length + separator);
        if (!word.empty()) {
            return word;
        }
    }
    return std::nullopt;
}

} // namespace vigilo
