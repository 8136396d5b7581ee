#pragma once

#include <string_view>
#include <vector>

namespace vigilo {

/// Whether this user runs a program of one of these names (15 bytes at most count, as the kernel
/// keeps them). One that has ended runs no more, even while its entry is still in the table; one on
/// another display is left out.
bool isOneOfOursRunning(const std::vector<std::string_view>& names);

} // namespace vigilo
