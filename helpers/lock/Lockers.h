#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vigilo {

/// What kind of display server a session runs on.
enum class DisplayServer { wayland, x11 };

/// The programs that lock the screen of a session without a desktop's own lock, best first.
std::vector<std::string_view> lockers(DisplayServer server);

/// The path of the first of them that `find` has a path for; `find` answers an empty text for a
/// program that is not installed.
std::string installedLocker(DisplayServer server,
                            const std::function<std::string(std::string_view)>& find);

} // namespace vigilo
