#pragma once

#include <QDBusConnection>
#include <QDBusPendingCall>

namespace vigilo::platform {

/// How the desktop's settings want programs to look, as far as the toolkit does not see to it.
struct Appearance {
    double textScale = 1; ///< 0.5 to 3
    bool isAnimated = true;

    bool operator==(const Appearance&) const = default;
};

/// Asks the desktop's settings portal (org.freedesktop.portal.Settings, namespace
/// org.gnome.desktop.interface, which other desktops fill in, too). Asks when it is made, so that
/// other work can be done until the answer is there. The portal is started only on a desktop that
/// surely has one. Main thread.
class AppearanceQuestion {
public:
    explicit AppearanceQuestion(const QDBusConnection& bus);

    /// What the portal does not tell, in time or sensibly, is as usual. Waits for half a second at
    /// most.
    Appearance answer();

private:
    QDBusPendingCall textScale_;
    QDBusPendingCall isAnimated_;
};

} // namespace vigilo::platform
