#include "platform/linux/instance/ApplicationService.h"

#include "platform/linux/bus/SessionBus.h"

#include <utility>

#include <QDBusConnection>
#include <QDBusMessage>

namespace vigilo::platform {

namespace {

constexpr auto objectPath = "/io/github/vigilo/Vigilo";
constexpr auto interfaceName = "org.freedesktop.Application";
constexpr int answerLimit = 5000; // milliseconds

constexpr auto tokenKey = "activation-token";
constexpr auto startupIdKey = "desktop-startup-id";

ApplicationService::Activation activation(const QVariantMap& platformData) {
    const auto text = [&](const char* key) {
        return platformData.value(QString::fromLatin1(key)).toString().toStdString();
    };
    return {.token = text(tokenKey), .startupId = text(startupIdKey)};
}

/// What the desktop gave this program to come forward with.
QVariantMap ownPlatformData(const std::string& startupId) {
    QVariantMap data;
    if (qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN")) {
        data.insert(QString::fromLatin1(tokenKey), qEnvironmentVariable("XDG_ACTIVATION_TOKEN"));
    }
    if (!startupId.empty()) {
        data.insert(QString::fromLatin1(startupIdKey), QString::fromStdString(startupId));
    }
    return data;
}

} // namespace

ApplicationService::ApplicationService(SessionBus& bus) : bus_(bus) {
    new ApplicationAdaptor(*this);
}

ApplicationService::Claim ApplicationService::claim(const std::string& startupId) {
    const auto isFirst = [this] { return !bus_.connection().isConnected() || takeName(); };
    if (!isFirst()) {
        if (passOn(startupId)) {
            return Claim::passedOn;
        }
        // The one that did not answer may have been about to end.
        if (!isFirst()) {
            return Claim::doesNotAnswer;
        }
    }
    connect(&bus_, &SessionBus::changed, this, &ApplicationService::busChanged);
    return Claim::first;
}

/// Whether the instance that runs has taken the request to come forward.
bool ApplicationService::passOn(const std::string& startupId) {
    QDBusMessage activation = QDBusMessage::createMethodCall(
        QString::fromLatin1(applicationId), QString::fromLatin1(objectPath),
        QString::fromLatin1(interfaceName), QStringLiteral("Activate"));
    activation << ownPlatformData(startupId);
    activation.setAutoStartService(false);
    const QDBusMessage answer = bus_.connection().call(activation, QDBus::Block, answerLimit);
    return answer.type() == QDBusMessage::ReplyMessage;
}

bool ApplicationService::takeName() {
    QDBusConnection bus = bus_.connection();
    // The object first: who sees the name may call at once.
    bus.registerObject(QString::fromLatin1(objectPath), this);
    return bus.registerService(QString::fromLatin1(applicationId));
}

void ApplicationService::busChanged() {
    if (bus_.connection().isConnected()) {
        // Where somebody was faster there are two of us now, and the other one is the one to reach.
        takeName();
    }
}

void ApplicationService::serve(Requests requests) {
    requests_ = std::move(requests);
}

void ApplicationService::activate(const QVariantMap& platformData) const {
    if (requests_.onActivate) {
        requests_.onActivate(activation(platformData));
    }
}

void ApplicationService::activateAction(const QString& action,
                                        const QVariantMap& platformData) const {
    if (requests_.onAction) {
        requests_.onAction(action.toStdString(), activation(platformData));
    }
}

ApplicationAdaptor::ApplicationAdaptor(ApplicationService& service)
    : QDBusAbstractAdaptor(&service), service_(service) {}

void ApplicationAdaptor::Activate(const QVariantMap& platformData) {
    service_.activate(platformData);
}

void ApplicationAdaptor::Open(const QStringList&, const QVariantMap& platformData) {
    // There are no documents; whoever passes some means the program.
    service_.activate(platformData);
}

void ApplicationAdaptor::ActivateAction(const QString& action, const QVariantList&,
                                        const QVariantMap& platformData) {
    service_.activateAction(action, platformData);
}

} // namespace vigilo::platform
