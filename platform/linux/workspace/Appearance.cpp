#include "platform/linux/workspace/Appearance.h"

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QString>
#include <QVariant>

namespace vigilo::platform {

namespace {

constexpr int answerLimit = 500; // milliseconds
constexpr double smallestScale = 0.5;
constexpr double largestScale = 3;

/// The one desktop whose session always has the portal. Elsewhere starting it can take very long.
bool startsPortal() {
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").contains(QLatin1String("GNOME"));
}

QDBusPendingCall ask(const QDBusConnection& bus, const char* key) {
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    question << QStringLiteral("org.gnome.desktop.interface") << QString::fromLatin1(key);
    question.setAutoStartService(startsPortal());
    return bus.asyncCall(question, answerLimit);
}

/// The value in the variants, of which there are two around it; invalid without one.
QVariant value(QDBusPendingCall& question) {
    question.waitForFinished();
    const QDBusPendingReply<QDBusVariant> reply = question;
    if (!reply.isValid()) {
        return {};
    }
    QVariant inner = reply.value().variant();
    while (inner.canConvert<QDBusVariant>()) {
        inner = inner.value<QDBusVariant>().variant();
    }
    return inner;
}

} // namespace

AppearanceQuestion::AppearanceQuestion(const QDBusConnection& bus)
    : textScale_(ask(bus, "text-scaling-factor")), isAnimated_(ask(bus, "enable-animations")) {}

Appearance AppearanceQuestion::answer() {
    Appearance appearance;
    const QVariant scale = value(textScale_);
    if (scale.typeId() == QMetaType::Double && scale.toDouble() >= smallestScale &&
        scale.toDouble() <= largestScale) {
        appearance.textScale = scale.toDouble();
    }
    const QVariant isAnimated = value(isAnimated_);
    if (isAnimated.typeId() == QMetaType::Bool) {
        appearance.isAnimated = isAnimated.toBool();
    }
    return appearance;
}

} // namespace vigilo::platform
