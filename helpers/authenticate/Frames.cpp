#include "helpers/authenticate/Frames.h"

namespace vigilo::authentication {

namespace {

bool isFromHelper(char kind) {
    return std::string_view("PVIEDNS").find(kind) != std::string_view::npos;
}

} // namespace

std::string encode(FrameKind kind, std::string_view text) {
    text = text.substr(0, longestText);
    std::string bytes;
    bytes += static_cast<char>(kind);
    bytes += static_cast<char>(text.size() & 0xFFU);
    bytes += static_cast<char>(text.size() >> 8U);
    bytes += text;
    return bytes;
}

std::optional<Frame> FrameReader::next() {
    if (isBroken_ || bytes_.size() < headerSize) {
        return std::nullopt;
    }
    const auto low = static_cast<unsigned char>(bytes_[1]);
    const auto high = static_cast<unsigned char>(bytes_[2]);
    const std::size_t length = low + (static_cast<std::size_t>(high) << 8U);
    if (!isFromHelper(bytes_[0]) || length > longestText) {
        isBroken_ = true;
        return std::nullopt;
    }
    if (bytes_.size() < headerSize + length) {
        return std::nullopt;
    }
    Frame frame{.kind = static_cast<FrameKind>(bytes_[0]),
                .text = bytes_.substr(headerSize, length)};
    bytes_.erase(0, headerSize + length);
    return frame;
}

} // namespace vigilo::authentication
