#pragma once

#include <span>
#include <string_view>

namespace vigilo {

/// What the command line asks for.
enum class Invocation { application, selfTest, help, version };

/// Decides by whole arguments, case-sensitively and in any position; the self-test wins over the
/// others, and whatever is not known is ignored.
Invocation invocation(std::span<const std::string_view> arguments);

/// What `--help` prints, with its last newline.
std::string_view helpText();

} // namespace vigilo
