#pragma once

#include <string>
#include <string_view>

namespace vigilo {

/// A text from outside made fit to be shown: each ill-formed UTF-8 sequence becomes one U+FFFD, and
/// control characters and marks that change the writing direction are left out, so that a folder's
/// name can neither break the line nor pass for another.
std::string displayText(std::string_view bytes);

} // namespace vigilo
