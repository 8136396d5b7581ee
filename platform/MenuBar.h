#pragma once

#include "platform/Menu.h"

namespace vigilo::platform {

/// The menus that belong to the program as a whole. Installing what is installed already costs
/// nothing. Main thread.
class MenuBar {
public:
    virtual ~MenuBar() = default;

    /// Whom the menus ask; none when null.
    virtual void observe(MenuRequests requests) = 0;

    /// The menu of which each item is the title of a menu, with the key equivalents that work while
    /// the main window has the keyboard.
    virtual void setMainMenu(const Menu& menu) = 0;

    /// The menu that a dock shows for the program, where docks show one.
    virtual void setDockMenu(const Menu& menu) = 0;
};

} // namespace vigilo::platform
