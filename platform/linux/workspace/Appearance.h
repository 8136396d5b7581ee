#pragma once

namespace vigilo::platform {

/// How the desktop's settings want programs to look, as far as the toolkit does not see to it.
struct Appearance {
    double textScale = 1; ///< 0.5 to 3
    bool isAnimated = true;

    bool operator==(const Appearance&) const = default;
};

/// What the desktop's settings portal tells now (org.freedesktop.portal.Settings, namespace
/// org.gnome.desktop.interface, which other desktops fill in, too). What it does not tell, in time
/// or sensibly, is as usual. Waits for an answer, a second at most; the portal is started only on a
/// desktop that surely has one.
Appearance desktopAppearance();

} // namespace vigilo::platform
