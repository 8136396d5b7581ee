#include "platform/linux/power/PortalInhibition.h"

#include "platform/linux/power/CallLimit.h"
#include "platform/linux/power/PortalResponse.h"
#include "platform/linux/power/PowerStatus.h"

#include <chrono>
#include <optional>
#include <utility>

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingReply>
#include <QUuid>
#include <QVariantMap>

#include <unistd.h>

namespace vigilo::platform {

namespace {

// Flags of org.freedesktop.portal.Inhibit: 4 is suspend; 8, idle, would keep the screen on.
constexpr std::uint32_t inhibitSuspend = 4;
// Of org.freedesktop.portal.Request.Response: the user's or the desktop's yes.
constexpr std::uint32_t responseSuccess = 0;

QDBusMessage portalCall(const QString& path, const char* interface, const char* method) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(QString::fromLatin1(portalService), path,
                                       QString::fromLatin1(interface), QString::fromLatin1(method));
    message.setAutoStartService(false);
    return message;
}

/// The path at which the portal answers a request, known before it is made, so that the answer
/// cannot come before somebody listens.
QString requestPath(const QDBusConnection& connection, const QString& token) {
    QString sender = connection.baseService().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
}

} // namespace

PortalGrant takePortalInhibition(const std::shared_ptr<PrivateBus>& bus, const std::string& reason,
                                 const QDeadlineTimer& deadline) {
    const QDBusConnection& connection = bus->connection();
    if (!connection.isConnected()) {
        return {.status = noBusStatus, .inhibition = nullptr};
    }
    const QString token = QStringLiteral("vigilo_") + QUuid::createUuid().toString(QUuid::Id128);
    const QString path = requestPath(connection, token);
    PortalResponse expected(connection, path);
    QDBusMessage question = portalCall(QStringLiteral("/org/freedesktop/portal/desktop"),
                                       "org.freedesktop.portal.Inhibit", "Inhibit");
    // No parent window: the request belongs to the program as a whole.
    question << QString() << inhibitSuspend
             << QVariantMap{{QStringLiteral("handle_token"), token},
                            {QStringLiteral("reason"), QString::fromStdString(reason)}};
    const QDBusPendingReply<QDBusObjectPath> reply =
        connection.call(question, QDBus::Block, millisecondsLeft(deadline));
    if (reply.isError()) {
        return {.status = powerStatus(reply.error().name().toStdString()), .inhibition = nullptr};
    }
    // From here on the request exists and is closed again unless it is kept.
    auto inhibition =
        std::make_unique<CookieInhibition>(bus, portalCall(path, portalRequestInterface, "Close"));
    const std::optional<std::uint32_t> response =
        expected.wait(std::chrono::milliseconds(millisecondsLeft(deadline)));
    if (!response) {
        return {.status = powerStatus("org.freedesktop.DBus.Error.NoReply"), .inhibition = nullptr};
    }
    if (*response != responseSuccess) {
        return {.status = powerStatus("org.freedesktop.DBus.Error.AccessDenied"),
                .inhibition = nullptr};
    }
    return {.status = 0, .inhibition = std::move(inhibition)};
}

bool isInsideFlatpak() {
    return access("/.flatpak-info", F_OK) == 0;
}

} // namespace vigilo::platform
