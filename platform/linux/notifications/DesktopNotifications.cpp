#include "platform/linux/notifications/DesktopNotifications.h"

#include <utility>

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLatin1StringView>
#include <QVariantMap>

namespace vigilo::platform {

namespace {

constexpr QLatin1StringView serviceName("org.freedesktop.Notifications");

/// Never starts the service: one that does not run shows nothing.
QDBusMessage call(const QString& service, const QString& method) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/Notifications"), serviceName, method);
    message.setAutoStartService(false);
    return message;
}

} // namespace

DesktopNotifications::DesktopNotifications(const SessionBus& bus) : bus_(bus) {
    connect(&bus_, &SessionBus::changed, this, [this] {
        if (owner_) {
            owner_.reset();
            silence();
        }
    });
}

DesktopNotifications::~DesktopNotifications() {
    DesktopNotifications::resume();
}

void DesktopNotifications::silence() {
    if (owner_) {
        return;
    }
    owner_ = std::make_unique<QDBusServiceWatcher>(serviceName, bus_.connection(),
                                                   QDBusServiceWatcher::WatchForOwnerChange);
    // Also where one takes the name over from another, which then has granted in vain.
    connect(owner_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) {
                grant_.reset();
                if (!owner.isEmpty()) {
                    ask();
                }
            });
    ask();
}

void DesktopNotifications::resume() {
    owner_.reset();
    ++generation_;
    if (const auto grant = std::exchange(grant_, std::nullopt)) {
        giveBack(*grant);
    }
}

void DesktopNotifications::ask() {
    grant_.reset();
    QDBusMessage request = call(serviceName, QStringLiteral("Inhibit"));
    request << QStringLiteral("io.github.vigilo.Vigilo") << QStringLiteral("Agent Lock")
            << QVariantMap();
    auto* const answer = new QDBusPendingCallWatcher(bus_.connection().asyncCall(request), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, generation = ++generation_, answer] {
                answer->deleteLater();
                const QDBusPendingReply<std::uint32_t> cookie = *answer;
                if (!cookie.isValid()) {
                    return;
                }
                const Grant grant{.owner = cookie.reply().service(), .cookie = cookie.value()};
                if (generation == generation_) {
                    grant_ = grant;
                } else {
                    giveBack(grant);
                }
            });
}

void DesktopNotifications::giveBack(const Grant& grant) {
    QDBusMessage release = call(grant.owner, QStringLiteral("UnInhibit"));
    release << grant.cookie;
    bus_.connection().send(release);
}

} // namespace vigilo::platform
