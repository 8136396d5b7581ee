#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace vigilo::platform {

/// What stands before a menu item's title.
enum class CheckState { none, off, on, mixed };

/// One line of a menu.
struct MenuItem {
    std::string title = {};    ///< UTF-8; empty for a separator
    std::string action = {};   ///< what choosing it does; empty for a line that only informs
    char keyEquivalent = '\0'; ///< pressed together with Ctrl; none when zero
    bool isEnabled = true;
    CheckState checkState = CheckState::none;
    bool isSeparator = false;
    std::vector<MenuItem> submenu = {}; ///< its title is the item's own

    bool operator==(const MenuItem&) const = default;
};

/// A menu as a value: made anew as often as one likes, compared with the installed one, and shown
/// only as far as it differs.
struct Menu {
    std::string title;
    std::vector<MenuItem> items;

    bool operator==(const Menu&) const = default;
};

/// What a shown menu asks for. Called from the event loop, on the main thread.
struct MenuRequests {
    std::function<void(const std::string& action)> onAction;
    std::function<void()> onWillOpen; ///< the last moment to install what is true now
};

/// Which lines stay when one menu takes the place of another: so many at the front and so many at
/// the back, whatever their titles; what lies between is new.
struct KeptItems {
    std::size_t front = 0;
    std::size_t back = 0;
};

KeptItems keptItems(std::span<const MenuItem> before, std::span<const MenuItem> after);

} // namespace vigilo::platform
