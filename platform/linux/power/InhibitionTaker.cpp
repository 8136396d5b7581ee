#include "platform/linux/power/InhibitionTaker.h"

#include "platform/linux/power/InhibitCall.h"
#include "platform/linux/power/PowerStatus.h"

#include <utility>

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QStringList>

#include <fcntl.h>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;

// The bus itself answers this; one that does not is as good as none.
constexpr auto namesLimit = 400ms;

std::int32_t statusOf(const QDBusConnection& connection, const QDBusPendingCall& call) {
    if (!connection.isConnected()) {
        return noBusStatus;
    }
    return call.isError() ? powerStatus(call.error().name().toStdString()) : 0;
}

/// The names owned on a bus; none when it does not say within the limit.
std::vector<std::string> ownedNames(const QDBusConnection& connection,
                                    std::chrono::milliseconds limit) {
    std::vector<std::string> names;
    if (!connection.isConnected()) {
        return names;
    }
    const QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ListNames"));
    QDBusPendingReply<QStringList> reply =
        connection.asyncCall(question, static_cast<int>(limit.count()));
    reply.waitForFinished();
    if (!reply.isError()) {
        for (const QString& name : reply.value()) {
            names.push_back(name.toStdString());
        }
    }
    return names;
}

} // namespace

InhibitionTaker::InhibitionTaker(const std::string& reason, std::chrono::milliseconds limit) {
    const PowerBuses buses;
    const auto names = ownedNames(buses.session->connection(), namesLimit);
    for (const InhibitMeans means : chooseInhibitMeans(names)) {
        const auto& bus = means == InhibitMeans::logind ? buses.system : buses.session;
        requests_.push_back({.means = means, .bus = bus});
        // A call over a bus that is not there would never be said to have finished.
        calls_.push_back(bus->connection().isConnected()
                             ? bus->connection().asyncCall(takeCall(means, reason),
                                                           static_cast<int>(limit.count()))
                             : QDBusPendingCall::fromError(QDBusError(
                                   QDBusError::Disconnected, QStringLiteral("no such bus"))));
    }
}

void InhibitionTaker::wait() {
    for (QDBusPendingCall& call : calls_) {
        call.waitForFinished();
    }
}

InhibitionTaker::Result InhibitionTaker::result() const {
    Result result;
    for (std::size_t index = 0; index < requests_.size(); ++index) {
        std::int32_t status = statusOf(requests_[index].bus->connection(), calls_[index]);
        std::unique_ptr<Inhibition> inhibition;
        if (status == 0) {
            inhibition = granted(requests_[index], calls_[index]);
            if (!inhibition) {
                status = powerStatus("an answer of another form");
            }
        }
        if (index == 0) {
            result.status = status;
        }
        if (inhibition) {
            result.inhibitions.emplace(requests_[index].means, std::move(inhibition));
        } else {
            result.refused.push_back(requests_[index].means);
        }
    }
    if (result.status != 0) {
        result.inhibitions.clear();
    }
    return result;
}

std::unique_ptr<Inhibition> InhibitionTaker::granted(const Request& request,
                                                     const QDBusPendingCall& call) {
    if (request.means == InhibitMeans::logind) {
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = call;
        if (reply.isError() || !reply.value().isValid()) {
            return nullptr;
        }
        // A copy of our own, closed on exec, so that no child keeps the machine awake after us.
        FileDescriptor lock(fcntl(reply.value().fileDescriptor(), F_DUPFD_CLOEXEC, 3));
        return lock ? std::make_unique<DescriptorInhibition>(std::move(lock)) : nullptr;
    }
    const QDBusPendingReply<std::uint32_t> reply = call;
    if (reply.isError()) {
        return nullptr;
    }
    return std::make_unique<CookieInhibition>(
        request.bus, releaseCall(request.means, reply.reply().service(), reply.value()));
}

} // namespace vigilo::platform
