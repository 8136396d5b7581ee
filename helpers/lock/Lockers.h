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

/// A program that locks the screen once its own command asks it to, and hears nothing else.
struct CommandedLocker {
    std::string_view program;
    std::string_view command;
    std::string_view argument;
};

/// That of X11 sessions.
inline constexpr CommandedLocker xScreenSaver{
    .program = "xscreensaver", .command = "xscreensaver-command", .argument = "-lock"};

/// The path of the first of them that `find` has a path for; `find` answers an empty text for a
/// program that is not installed.
std::string installedLocker(DisplayServer server,
                            const std::function<std::string(std::string_view)>& find);

} // namespace vigilo
