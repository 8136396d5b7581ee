#include "platform/qt/covers/GnomeOverview.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QLatin1StringView>

namespace vigilo::platform {

namespace {

constexpr QLatin1StringView shell("org.gnome.Shell");
constexpr QLatin1StringView path("/org/gnome/Shell");
constexpr QLatin1StringView properties("org.freedesktop.DBus.Properties");
constexpr QLatin1StringView isOpen("OverviewActive");

} // namespace

GnomeOverview::GnomeOverview() {
    // From whomever: asking the bus who owns the name would wait for its answer.
    bus_.connect(QString(), path, properties, QStringLiteral("PropertiesChanged"), this,
                 SLOT(take(QString, QVariantMap, QStringList)));
    end(); // it may be open already
}

void GnomeOverview::take(const QString& interface, const QVariantMap& changed,
                         const QStringList& /*invalid*/) {
    if (interface == shell && changed.value(isOpen).toBool()) {
        end();
    }
}

void GnomeOverview::end() {
    QDBusMessage request =
        QDBusMessage::createMethodCall(shell, path, properties, QStringLiteral("Set"));
    request.setAutoStartService(false);
    request << QString(shell) << QString(isOpen) << QVariant::fromValue(QDBusVariant(false));
    bus_.send(request);
}

} // namespace vigilo::platform
