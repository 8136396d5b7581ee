#pragma once

#include <string>

namespace vigilo::platform {

/// Tells an X11 desktop that the start of this id, as it gave it to the program, is over, so that
/// its busy pointer goes: where a window is shown for it the toolkit does so (Startup Notification
/// Protocol). Nothing on other desktops, and for an id that is empty or longer than any. Needs the
/// application object. Main thread.
void endStartupNotification(const std::string& id);

} // namespace vigilo::platform
