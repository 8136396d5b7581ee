#include "platform/linux/processes/CommandLineReader.h"

#include "platform/ProcessTable.h"
#include "platform/linux/FileDescriptor.h"
#include "text/Words.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace vigilo::platform {

namespace {

constexpr std::size_t usualLimit = std::size_t{4} * 1024;

/// Reads until `end` is reached or nothing more comes; returns the new length. The kernel gives all
/// that is asked for unless it comes to the end (or to memory that it cannot read), so an answer
/// that is shorter saves the question for more.
std::size_t fill(int descriptor, char* buffer, std::size_t length, std::size_t end) {
    while (length < end) {
        const ssize_t count = ::read(descriptor, buffer + length, end - length);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        // A process may rewrite its arguments meanwhile; NUL separates them.
        std::replace(buffer + length, buffer + length + count, '\0', ' ');
        const bool isWhole = static_cast<std::size_t>(count) < end - length;
        length += static_cast<std::size_t>(count);
        if (isWhole) {
            break;
        }
    }
    return length;
}

/// Whether the words that matter are all there, each followed by something.
bool hasExaminedWords(std::string_view text) {
    Words words(text);
    for (std::size_t count = 0; count < examinedWords; ++count) {
        const auto word = words.next();
        if (!word || word->data() + word->size() == text.data() + text.size()) {
            return false;
        }
    }
    return true;
}

/// Takes off the last word, which the end of the buffer cut.
std::string_view withoutLastWord(std::string_view text) {
    std::size_t end = 0;
    Words words(text);
    for (auto word = words.next(); word; word = words.next()) {
        const auto wordEnd = static_cast<std::size_t>(word->data() + word->size() - text.data());
        if (wordEnd < text.size()) {
            end = wordEnd;
        }
    }
    return text.substr(0, end);
}

} // namespace

std::string_view CommandLineReader::read(int directory, const char* path) {
    const FileDescriptor file(openat(directory, path, O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (!file) {
        return {};
    }
    std::size_t length = fill(file.number(), buffer_.data(), 0, usualLimit);
    bool isCut = length == usualLimit;
    if (isCut && !hasExaminedWords({buffer_.data(), length})) {
        length = fill(file.number(), buffer_.data(), length, buffer_.size());
        isCut = length == buffer_.size();
    }
    const std::string_view text(buffer_.data(), length);
    return isCut ? withoutLastWord(text) : text;
}

} // namespace vigilo::platform
