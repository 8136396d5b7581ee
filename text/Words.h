#pragma once

#include <optional>
#include <string_view>

namespace vigilo {

/// Walks over the words of a text, which Unicode white space separates. Bytes that are no UTF-8
/// belong to words.
class Words {
public:
    explicit Words(std::string_view text) : rest_(text) {}

    /// The next word; none at the end of the text.
    std::optional<std::string_view> next();

    /// What follows the word last given, without the one white-space character that ended it.
    std::string_view rest() const { return rest_; }

private:
    std::string_view rest_;
};

} // namespace vigilo
