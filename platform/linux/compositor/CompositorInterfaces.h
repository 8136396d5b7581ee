#pragma once

#include <chrono>
#include <set>
#include <string>

namespace vigilo::platform {

/// The names of the Wayland interfaces that the session's compositor offers to everybody, over a
/// connection of its own that lasts only as long as the question. Empty where there is no
/// compositor, where it has not answered within `limit`, and where the one connection that it gave
/// us ($WAYLAND_SOCKET) must be left for the toolkit. Any thread.
std::set<std::string> compositorInterfaces(std::chrono::milliseconds limit);

} // namespace vigilo::platform
