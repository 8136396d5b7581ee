#include "platform/linux/workspace/Appearance.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QStringList>
#include <QVariant>

namespace vigilo::platform {

namespace {

// It is asked only once, and at the start of a session everybody is busy.
constexpr int answerLimit = 2000; // milliseconds
constexpr double smallestScale = 0.5;
constexpr double largestScale = 3;

// GNOME's own, which the portals of other desktops fill in, too; the common ones; and Plasma's.
constexpr QLatin1String gnomeInterface("org.gnome.desktop.interface");
constexpr QLatin1String gnomeAccess("org.gnome.desktop.a11y.interface");
constexpr QLatin1String common("org.freedesktop.appearance");
constexpr QLatin1String plasma("org.kde.kdeglobals.General");

/// The one desktop whose session always has the portal. Elsewhere starting it can take very long.
bool startsPortal() {
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").contains(QLatin1String("GNOME"));
}

QDBusPendingCall ask(const QDBusConnection& bus) {
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("ReadAll"));
    question << QStringList{gnomeInterface, gnomeAccess, common, plasma};
    question.setAutoStartService(startsPortal());
    return bus.asyncCall(question, answerLimit);
}

/// A value of this type; none where it has another.
template <typename Value>
Value value(const PortalSettings& settings, QLatin1String group, const char* key, Value usual) {
    const QVariant found = settings.value(group).value(QLatin1String(key));
    return found.typeId() == qMetaTypeId<Value>() ? found.value<Value>() : usual;
}

/// Themes for those who need the contrast are named for it: "HighContrastInverse" of GNOME,
/// "BreezeHighContrast" of Plasma, "ContrastHigh" of MATE.
bool isNamedForContrast(const QString& theme) {
    return theme.contains(QLatin1String("HighContrast")) ||
           theme.contains(QLatin1String("ContrastHigh"));
}

/// A value of this type among those of an X11 desktop; none where it has another.
template <typename Value>
Value value(const XSettings& settings, std::string_view name, Value usual) {
    const auto found = settings.find(name);
    const auto* const value =
        found == settings.end() ? nullptr : std::get_if<Value>(&found->second);
    return value == nullptr ? usual : *value;
}

} // namespace

Appearance appearance(const PortalSettings& settings) {
    Appearance appearance;
    const auto scale = value(settings, gnomeInterface, "text-scaling-factor", appearance.textScale);
    if (scale >= smallestScale && scale <= largestScale) {
        appearance.textScale = scale;
    }
    appearance.isAnimated =
        value(settings, gnomeInterface, "enable-animations", appearance.isAnimated);
    appearance.isContrastHigh =
        value(settings, common, "contrast", 0U) == 1 ||
        value(settings, gnomeAccess, "high-contrast", false) ||
        isNamedForContrast(value(settings, gnomeInterface, "gtk-theme", QString())) ||
        isNamedForContrast(value(settings, plasma, "ColorScheme", QString()));
    return appearance;
}

Appearance withXSettings(const Appearance& appearance, const XSettings& settings) {
    const auto theme = value(settings, "Net/ThemeName", std::string_view());
    Appearance all = appearance;
    all.isContrastHigh =
        all.isContrastHigh ||
        isNamedForContrast(QString::fromUtf8(theme.data(), qsizetype(theme.size())));
    all.isAnimated = all.isAnimated && value(settings, "Gtk/EnableAnimations", 1) != 0;
    return all;
}

AppearanceQuestion::AppearanceQuestion(const QDBusConnection& bus) : settings_(ask(bus)) {}

Appearance AppearanceQuestion::answer() {
    settings_.waitForFinished();
    const QDBusMessage reply = settings_.reply();
    if (reply.type() != QDBusMessage::ReplyMessage ||
        reply.signature() != QLatin1String("a{sa{sv}}")) {
        return {};
    }
    return appearance(qdbus_cast<PortalSettings>(reply.arguments().first()));
}

} // namespace vigilo::platform
