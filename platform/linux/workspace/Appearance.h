#pragma once

#include "platform/linux/workspace/XSettings.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QMap>
#include <QString>
#include <QVariantMap>

namespace vigilo::platform {

/// How the desktop's settings want programs to look, as far as the toolkit does not see to it.
struct Appearance {
    double textScale = 1; ///< 0.5 to 3
    bool isAnimated = true;
    bool isContrastHigh = false;

    bool operator==(const Appearance&) const = default;
};

/// Keys with their values, by the namespaces of the settings portal.
using PortalSettings = QMap<QString, QVariantMap>;

/// What settings say of the appearance; what they do not tell, or not sensibly, is as usual.
Appearance appearance(const PortalSettings& settings);

/// The same with what the settings of an X11 desktop ask for besides. Theirs is no text scale: the
/// toolkit follows their resolution of fonts by itself.
Appearance withXSettings(const Appearance& appearance, const XSettings& settings);

/// Asks the desktop's settings portal (org.freedesktop.portal.Settings) for the appearance. Asks
/// when it is made, so that other work can be done until the answer is there. The portal is started
/// only on a desktop that surely has one. Main thread.
class AppearanceQuestion {
public:
    explicit AppearanceQuestion(const QDBusConnection& bus);

    /// As usual without an answer in time. Waits for two seconds at most.
    Appearance answer();

private:
    QDBusPendingCall settings_;
};

} // namespace vigilo::platform
