#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace vigilo::platform {

/// A password on its way from the keyboard to the helper: in memory that is never swapped out or
/// put into a core dump, and overwritten as soon as it is not needed. Both are properties of whole
/// pages, so each has one of its own.
class SecretText {
public:
    static constexpr std::size_t capacity = 511; ///< bytes; what PAM takes

    /// Throws std::bad_alloc when there is no memory for it.
    SecretText();
    ~SecretText();
    SecretText(const SecretText&) = delete;
    SecretText& operator=(const SecretText&) = delete;

    /// Adds UTF-8; what does not fit as a whole is left out.
    void append(std::string_view utf8);

    /// Takes the last character off.
    void removeLast();

    void clear();

    std::string_view view() const { return {bytes_.data(), size_}; }
    bool isEmpty() const { return size_ == 0; }

    /// How many characters it has.
    std::size_t length() const;

private:
    std::span<char, capacity> bytes_;
    std::size_t size_ = 0;
};

} // namespace vigilo::platform
