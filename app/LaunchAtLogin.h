#pragma once

#include "platform/Alerts.h"
#include "platform/LoginItem.h"
#include "platform/Menu.h"

namespace vigilo {

/// The menu item that shows and switches whether the program starts at login. The state is the
/// system's own and is asked for each time the item is made; nothing is kept here.
platform::MenuItem launchAtLoginMenuItem(const platform::LoginItem& loginItem);

/// Switches the start at login on or off. While the user's approval is wanted it only opens the
/// settings where that is given. A failure is shown in an alert, which is waited for. True when the
/// menus that show the item have to be made anew, which a failure leaves as they are.
[[nodiscard]] bool toggleLaunchAtLogin(platform::LoginItem& loginItem, platform::Alerts& alerts);

} // namespace vigilo
