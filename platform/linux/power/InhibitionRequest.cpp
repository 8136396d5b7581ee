#include "platform/linux/power/InhibitionRequest.h"

#include "platform/linux/bus/BusProbe.h"
#include "platform/linux/power/CallLimit.h"
#include "platform/linux/power/InhibitCall.h"
#include "platform/linux/power/PortalInhibition.h"
#include "platform/linux/power/PowerStatus.h"

#include <optional>
#include <utility>

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QDeadlineTimer>
#include <QStringList>

#include <fcntl.h>

namespace vigilo::platform {

namespace {

/// The toolkit connects in a thread that it has for all connections, and opens and closes no other
/// meanwhile: a bus that hangs would hold up whoever lets go of a lock.
bool hangs(MessageBus bus, const QDeadlineTimer& deadline) {
    return busState(bus, std::chrono::milliseconds(millisecondsLeft(deadline))) == BusState::hangs;
}

/// The names owned on a bus; none when it does not say within the limit.
std::optional<std::vector<std::string>> ownedNames(const QDBusConnection& connection,
                                                   const QDeadlineTimer& deadline) {
    const QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ListNames"));
    const QDBusPendingReply<QStringList> reply =
        connection.call(question, QDBus::Block, millisecondsLeft(deadline));
    if (reply.isError()) {
        return std::nullopt;
    }
    std::vector<std::string> names;
    for (const QString& name : reply.value()) {
        names.push_back(name.toStdString());
    }
    return names;
}

std::unique_ptr<Inhibition> granted(InhibitMeans means, const std::shared_ptr<PrivateBus>& bus,
                                    const QDBusPendingCall& call) {
    if (means == InhibitMeans::logind) {
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
        bus, releaseCall(means, reply.reply().service(), reply.value()));
}

/// Whether the first answer, the desktop's own, was a grant decides about all.
class Answers {
public:
    void add(InhibitMeans means, std::int32_t status, std::unique_ptr<Inhibition> inhibition) {
        if (status == 0 && !inhibition) {
            status = powerStatus("an answer of another form");
        }
        if (isFirst_) {
            result_.status = status;
            isFirst_ = false;
        }
        if (inhibition) {
            result_.inhibitions.emplace(means, std::move(inhibition));
        } else {
            result_.refused.push_back(means);
        }
    }

    InhibitionResult take(PowerBuses buses) {
        if (result_.status != 0) {
            result_.inhibitions.clear();
        }
        result_.buses = std::move(buses);
        return std::move(result_);
    }

private:
    InhibitionResult result_;
    bool isFirst_ = true;
};

InhibitionResult noReply(PowerBuses buses) {
    return {.status = powerStatus("org.freedesktop.DBus.Error.NoReply"),
            .inhibitions = {},
            .refused = {},
            .buses = std::move(buses)};
}

InhibitionResult askServices(const InhibitionRequest& request, const QDeadlineTimer& deadline,
                             PowerBuses buses, const std::vector<InhibitMeans>& chosen) {
    struct Question {
        InhibitMeans means;
        std::shared_ptr<PrivateBus> bus;
        std::optional<QDBusPendingCall> call; ///< none over a bus that is not there
    };
    std::vector<Question> questions;
    for (const InhibitMeans means : chosen) {
        const auto& bus = means == InhibitMeans::logind ? buses.system : buses.session;
        Question question{.means = means, .bus = bus, .call = std::nullopt};
        if (bus->connection().isConnected()) {
            question.call = bus->connection().asyncCall(takeCall(means, request.reason),
                                                        millisecondsLeft(deadline));
        }
        questions.push_back(std::move(question));
    }
    Answers answers;
    for (Question& question : questions) {
        if (!question.call) {
            answers.add(question.means, noBusStatus, nullptr);
            continue;
        }
        question.call->waitForFinished();
        if (question.call->isError()) {
            const std::string error = question.call->error().name().toStdString();
            answers.add(question.means, powerStatus(error), nullptr);
        } else {
            answers.add(question.means, 0, granted(question.means, question.bus, *question.call));
        }
    }
    return answers.take(std::move(buses));
}

} // namespace

InhibitionResult takeInhibitions(const InhibitionRequest& request) {
    const QDeadlineTimer deadline(request.limit);
    PowerBuses buses;
    if (hangs(MessageBus::session, deadline)) {
        return noReply(std::move(buses));
    }
    buses.session = std::make_shared<PrivateBus>(QDBusConnection::SessionBus);
    if (deadline.hasExpired()) {
        // Whoever asked has gone on without.
        return noReply(std::move(buses));
    }
    const bool hasSessionBus = buses.session->connection().isConnected();
    if (!hasSessionBus && request.needsSessionBus) {
        return {.status = noBusStatus, .inhibitions = {}, .refused = {}, .buses = buses};
    }
    if (request.isSandboxed) {
        PortalGrant grant = takePortalInhibition(buses.session, request.reason, deadline);
        Answers answers;
        answers.add(InhibitMeans::portal, grant.status, std::move(grant.inhibition));
        return answers.take(std::move(buses));
    }
    if (hangs(MessageBus::system, deadline)) {
        return noReply(std::move(buses));
    }
    buses.system = std::make_shared<PrivateBus>(QDBusConnection::SystemBus);
    std::optional<std::vector<std::string>> names = std::vector<std::string>{};
    if (hasSessionBus) {
        names = ownedNames(buses.session->connection(), deadline);
    }
    if (!names) {
        // Which desktop this is cannot be known, and logind alone is wrong on some of them.
        return noReply(std::move(buses));
    }
    return askServices(request, deadline, std::move(buses), chooseInhibitMeans(*names));
}

} // namespace vigilo::platform
