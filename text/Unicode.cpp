#include "text/Unicode.h"

namespace vigilo {

namespace {

/// How a first byte goes on: the number of bytes that follow and the range of the next one
/// (Unicode 15, table 3-7).
struct Lead {
    std::size_t following = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    unsigned char bits = 0;
};

bool findLead(unsigned char byte, Lead& lead) {
    if (byte >= 0xC2 && byte <= 0xDF) {
        lead = {.following = 1, .bits = 0x1F};
    } else if (byte == 0xE0) {
        lead = {.following = 2, .low = 0xA0, .bits = 0x0F};
    } else if (byte == 0xED) {
        lead = {.following = 2, .high = 0x9F, .bits = 0x0F};
    } else if (byte >= 0xE1 && byte <= 0xEF) {
        lead = {.following = 2, .bits = 0x0F};
    } else if (byte == 0xF0) {
        lead = {.following = 3, .low = 0x90, .bits = 0x07};
    } else if (byte >= 0xF1 && byte <= 0xF3) {
        lead = {.following = 3, .bits = 0x07};
    } else if (byte == 0xF4) {
        lead = {.following = 3, .high = 0x8F, .bits = 0x07};
    } else {
        return false;
    }
    return true;
}

} // namespace

Decoded decodeFirst(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        return {.codePoint = first, .length = 1, .isValid = true};
    }
    Lead lead;
    if (!findLead(first, lead)) {
        return {.length = 1};
    }
    char32_t codePoint = first & lead.bits;
    for (std::size_t index = 1; index <= lead.following; ++index) {
        const unsigned char low = index == 1 ? lead.low : 0x80;
        const unsigned char high = index == 1 ? lead.high : 0xBF;
        const unsigned byte = index < text.size() ? static_cast<unsigned char>(text[index]) : 0;
        if (byte < low || byte > high) {
            return {.length = index};
        }
        codePoint = (codePoint << 6) | (byte & 0x3FU);
    }
    return {.codePoint = codePoint, .length = lead.following + 1, .isValid = true};
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const Decoded decoded = decodeFirst(text);
        if (!decoded.isValid) {
            return false;
        }
        text.remove_prefix(decoded.length);
    }
    return true;
}

bool isWhiteSpace(char32_t codePoint) {
    return (codePoint >= 0x09 && codePoint <= 0x0D) || codePoint == 0x20 || codePoint == 0x85 ||
           codePoint == 0xA0 || codePoint == 0x1680 ||
           (codePoint >= 0x2000 && codePoint <= 0x200A) || codePoint == 0x2028 ||
           codePoint == 0x2029 || codePoint == 0x202F || codePoint == 0x205F || codePoint == 0x3000;
}

} // namespace vigilo
