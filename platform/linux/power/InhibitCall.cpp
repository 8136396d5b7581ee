#include "platform/linux/power/InhibitCall.h"

#include "platform/Fatal.h"

namespace vigilo::platform {

namespace {

// Plasma: "interrupt session", which covers idle suspend and leaves the screen alone.
constexpr std::uint32_t plasmaInterruptSession = 1;
// Session manager: "inhibit the session being marked as idle" is 8; 4 is "inhibit suspending".
constexpr std::uint32_t sessionInhibitSuspend = 4;

QString applicationName() {
    return QStringLiteral("Vigilo");
}

/// Where a service listens.
struct Address {
    const char* path;
    const char* interface;
    const char* take;
    const char* release;
};

Address address(InhibitMeans means) {
    switch (means) {
    case InhibitMeans::plasma:
        return {"/org/kde/Solid/PowerManagement/PolicyAgent",
                "org.kde.Solid.PowerManagement.PolicyAgent", "AddInhibition", "ReleaseInhibition"};
    case InhibitMeans::sessionManager:
        return {"/org/gnome/SessionManager", "org.gnome.SessionManager", "Inhibit", "Uninhibit"};
    case InhibitMeans::powerManager:
        return {"/org/freedesktop/PowerManagement/Inhibit",
                "org.freedesktop.PowerManagement.Inhibit", "Inhibit", "UnInhibit"};
    case InhibitMeans::logind:
        return {"/org/freedesktop/login1", "org.freedesktop.login1.Manager", "Inhibit", nullptr};
    case InhibitMeans::portal:
        break;
    }
    fatal("a service that is not asked with a plain call");
}

QDBusMessage call(InhibitMeans means, const QString& service, const char* method) {
    const Address at = address(means);
    QDBusMessage message = QDBusMessage::createMethodCall(service, QString::fromLatin1(at.path),
                                                          QString::fromLatin1(at.interface),
                                                          QString::fromLatin1(method));
    message.setAutoStartService(false);
    return message;
}

} // namespace

QDBusMessage takeCall(InhibitMeans means, const std::string& reason) {
    QDBusMessage message =
        call(means, QString::fromUtf8(serviceName(means).data()), address(means).take);
    const QString shown = QString::fromStdString(reason);
    switch (means) {
    case InhibitMeans::plasma:
        message << plasmaInterruptSession << applicationName() << shown;
        break;
    case InhibitMeans::sessionManager:
        // No window: the request belongs to the program as a whole.
        message << applicationName() << std::uint32_t{0} << shown << sessionInhibitSuspend;
        break;
    case InhibitMeans::powerManager:
        message << applicationName() << shown;
        break;
    case InhibitMeans::logind:
        message << QStringLiteral("idle") << applicationName() << shown << QStringLiteral("block");
        break;
    case InhibitMeans::portal:
        break; // refused by address()
    }
    return message;
}

QDBusMessage releaseCall(InhibitMeans means, const QString& owner, std::uint32_t cookie) {
    const char* const method = address(means).release;
    if (method == nullptr) {
        fatal("a logind lock is given back by closing its descriptor");
    }
    QDBusMessage message = call(means, owner, method);
    message << cookie;
    return message;
}

} // namespace vigilo::platform
