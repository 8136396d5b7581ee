#pragma once

#include <cstddef>
#include <string_view>

namespace vigilo {

/// One code point read from the front of a text.
struct Decoded {
    char32_t codePoint = 0;
    std::size_t length = 0; ///< bytes taken, at least 1
    bool isValid = false;   ///< false: one or more bytes that are no UTF-8
};

/// Reads the first code point of a non-empty text; an ill-formed sequence counts as its longest
/// beginning that could have been one (Unicode 15, 3.9, best practice for U+FFFD substitution).
Decoded decodeFirst(std::string_view text);

/// Whether the whole text is well-formed UTF-8.
bool isUtf8(std::string_view text);

/// Whether the code point has the Unicode property White_Space.
bool isWhiteSpace(char32_t codePoint);

} // namespace vigilo
