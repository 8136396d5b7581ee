#pragma once

class QWindow;

namespace vigilo::platform {

/// Takes a window off the display, for good, and keeps every event from it. On Wayland it still
/// exists for the toolkit then, and whoever owns it keeps it for a moment longer: the toolkit (6.4)
/// hears on a thread of its own that a picture was shown, and uses the window without looking
/// whether that is just being hidden or destroyed. A window with a role of the toolkit's goes when
/// its last picture was shown, or after two seconds, any other at once. Main thread.
void leaveDisplay(QWindow& window);

/// Has one that is leaving gone at once. Only when no event is handled any more: a compositor may
/// take what the toolkit answers to it for an error when it comes for a window with a role.
void unmap(QWindow& window);

/// Says of a window that it is leaving, or not after all.
void markAsLeaving(QWindow& window, bool isLeaving);

/// Whether the window is shown and not leaving.
bool isOnDisplay(const QWindow& window);

} // namespace vigilo::platform
