#include "text/DisplayText.h"

#include "text/Unicode.h"

namespace vigilo {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

bool isKeptOffTheScreen(char32_t codePoint) {
    const bool isControl = codePoint < 0x20 || (codePoint >= 0x7F && codePoint <= 0x9F);
    const bool isLineBreak = codePoint == 0x2028 || codePoint == 0x2029;
    // Bidi_Control of the Unicode character database.
    const bool isDirectional = codePoint == 0x061C || codePoint == 0x200E || codePoint == 0x200F ||
                               (codePoint >= 0x202A && codePoint <= 0x202E) ||
                               (codePoint >= 0x2066 && codePoint <= 0x2069);
    return isControl || isLineBreak || isDirectional;
}

} // namespace

std::string displayText(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Decoded decoded = decodeFirst(bytes);
        if (!decoded.isValid) {
            text += replacementCharacter;
        } else if (!isKeptOffTheScreen(decoded.codePoint)) {
            text += bytes.substr(0, decoded.length);
        }
        bytes.remove_prefix(decoded.length);
    }
    return text;
}

} // namespace vigilo
