#pragma once

#include "core/AwakeController.h"
#include "platform/Menu.h"
#include "platform/StatusBar.h"

#include <string>

namespace vigilo {

// The menus as they have to look now. Pure functions: `launchAtLogin` is the item that
// launchAtLoginMenuItem() makes, and actions are those of AppDelegate::performAction().

/// The menu of the status item.
platform::Menu statusMenu(const AwakeController& controller,
                          const platform::MenuItem& launchAtLogin);

/// The picture of the status item.
platform::StatusImage statusImage(const AwakeController& controller);

/// What the status item says when the pointer rests on it.
std::string statusToolTip(const AwakeController& controller);

/// The program's main menu: a menu of menus.
platform::Menu mainMenu(const AwakeController& controller, const platform::MenuItem& launchAtLogin);

/// The menu of the program in a dock.
platform::Menu dockMenu(const AwakeController& controller);

} // namespace vigilo
