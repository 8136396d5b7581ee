#include "platform/linux/power/PortalResponse.h"

#include <QTimer>

namespace vigilo::platform {

PortalResponse::PortalResponse(QDBusConnection connection, const QString& path) {
    connection.connect(QString::fromLatin1(portalService), path,
                       QString::fromLatin1(portalRequestInterface), QStringLiteral("Response"),
                       this, SLOT(respond(uint, QVariantMap)));
}

std::optional<std::uint32_t> PortalResponse::wait(std::chrono::milliseconds limit) {
    if (!response_) {
        QTimer::singleShot(limit, &loop_, &QEventLoop::quit);
        loop_.exec();
    }
    return response_;
}

void PortalResponse::respond(uint response, const QVariantMap&) {
    response_ = response;
    loop_.quit();
}

} // namespace vigilo::platform
