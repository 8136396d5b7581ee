#pragma once

#include <string_view>
#include <vector>

namespace vigilo {

/// The parts of a text between separators, empty ones left out. They refer into the text.
std::vector<std::string_view> parts(std::string_view text, char separator);

} // namespace vigilo
