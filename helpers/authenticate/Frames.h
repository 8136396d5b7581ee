#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vigilo::authentication {

/// What a frame between the program and its authentication helper carries.
enum class FrameKind : char {
    hiddenPrompt = 'P',  ///< helper: a question whose answer must not be shown
    visiblePrompt = 'V', ///< helper: a question whose answer may be shown
    information = 'I',   ///< helper: a text to show
    error = 'E',         ///< helper: a text to show as an error
    delay = 'D',         ///< helper: how long to wait after a failure, decimal milliseconds
    impossible = 'N',    ///< helper: nobody can be authenticated here
    success = 'S',       ///< helper: it is the owner; counts only with exit status 0
    answer = 'A',        ///< program: the answer to the question
};

/// The longest text of a frame, in bytes. Longer ones from a module are cut, longer ones on the
/// wire are an error.
inline constexpr std::size_t longestText = 4096;

/// The longest answer, in bytes; what PAM_MAX_RESP_SIZE leaves beside the terminating NUL.
inline constexpr std::size_t longestAnswer = 511;

/// A frame: the kind, the text's length in two bytes (least significant first) and the text.
inline constexpr std::size_t headerSize = 3;

/// The helper's exit status when PAM has looked at the answers and said no. Every other one but 0
/// says that nothing could be found out.
inline constexpr int refusedStatus = 3;

/// The helper's only argument, where a finger is to be shown instead of what the system asks
/// everybody. It asks nothing then.
inline constexpr std::string_view fingerprintArgument = "fingerprint";

struct Frame {
    FrameKind kind = FrameKind::error;
    std::string text;

    bool operator==(const Frame&) const = default;
};

/// A frame's bytes; the text is cut to `longestText`.
std::string encode(FrameKind kind, std::string_view text);

/// Takes the helper's frames out of a stream of bytes that comes in pieces of any size.
class FrameReader {
public:
    void add(std::string_view bytes) { bytes_ += bytes; }

    /// The next whole frame; none when there is none yet or `isBroken()`.
    std::optional<Frame> next();

    /// The bytes were no frames: nothing that came or comes is to be believed.
    bool isBroken() const { return isBroken_; }

private:
    std::string bytes_;
    bool isBroken_ = false;
};

} // namespace vigilo::authentication
