#include "platform/linux/lock/LogindSystemLock.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace vigilo::platform {

void LogindSystemLock::sleepDisplays() {
    const QString service = QStringLiteral("org.freedesktop.login1");
    QDBusMessage lock;
    if (qEnvironmentVariableIsSet("XDG_SESSION_ID")) {
        lock = QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/login1"),
                                              QStringLiteral("org.freedesktop.login1.Manager"),
                                              QStringLiteral("LockSession"));
        lock << qEnvironmentVariable("XDG_SESSION_ID");
    } else {
        // logind's own name for the caller's session or, outside one, the user's display session.
        lock = QDBusMessage::createMethodCall(
            service, QStringLiteral("/org/freedesktop/login1/session/auto"),
            QStringLiteral("org.freedesktop.login1.Session"), QStringLiteral("Lock"));
    }
    lock.setAutoStartService(false);
    QDBusConnection::systemBus().send(lock);
}

} // namespace vigilo::platform
