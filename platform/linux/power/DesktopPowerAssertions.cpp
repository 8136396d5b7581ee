#include "platform/linux/power/DesktopPowerAssertions.h"

#include <algorithm>
#include <utility>

#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;

// With what finding out about the services may take, a caller is held up for 2 s at most.
constexpr auto createLimit = 1500ms;
// A retake holds nobody up.
constexpr auto retakeLimit = 10s;

constexpr auto firstPause = 500ms;
constexpr auto longestPause = 30000ms;

} // namespace

DesktopPowerAssertions::DesktopPowerAssertions() {
    retryTimer_.setSingleShot(true);
    connect(&retryTimer_, &QTimer::timeout, this, &DesktopPowerAssertions::retakeAll);
    auto* const sessionWatcher = new QDBusServiceWatcher(this);
    sessionWatcher->setConnection(watched_.session->connection());
    watch(*sessionWatcher,
          {InhibitMeans::plasma, InhibitMeans::sessionManager, InhibitMeans::powerManager});
    auto* const systemWatcher = new QDBusServiceWatcher(this);
    systemWatcher->setConnection(watched_.system->connection());
    watch(*systemWatcher, {InhibitMeans::logind});
    QDBusConnection system = watched_.system->connection();
    system.connect(QStringLiteral("org.freedesktop.login1"),
                   QStringLiteral("/org/freedesktop/login1"),
                   QStringLiteral("org.freedesktop.login1.Manager"),
                   QStringLiteral("PrepareForSleep"), this, SLOT(prepareForSleep(bool)));
}

DesktopPowerAssertions::~DesktopPowerAssertions() = default;

void DesktopPowerAssertions::watch(QDBusServiceWatcher& watcher,
                                   std::initializer_list<InhibitMeans> services) {
    watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    for (const InhibitMeans means : services) {
        watcher.addWatchedService(QString::fromUtf8(serviceName(means).data()));
    }
    connect(&watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            &DesktopPowerAssertions::retakeAll);
}

PowerAssertion DesktopPowerAssertions::create(std::string_view, std::uint32_t,
                                              std::string_view name) {
    const std::string reason(name);
    InhibitionTaker taker(reason, createLimit);
    taker.wait();
    InhibitionTaker::Result result = taker.result();
    if (result.status != 0) {
        return {.status = result.status, .id = 0};
    }
    const std::uint32_t id = nextId_++;
    held_.emplace(id, Held{.reason = reason,
                           .inhibitions = std::move(result.inhibitions),
                           .retake = nullptr,
                           .pause = firstPause});
    return {.status = 0, .id = id};
}

void DesktopPowerAssertions::release(std::uint32_t id) {
    held_.erase(id);
}

void DesktopPowerAssertions::prepareForSleep(bool begins) {
    if (!begins) {
        retakeAll();
    }
}

void DesktopPowerAssertions::retakeAll() {
    for (const auto& [id, held] : held_) {
        retake(id);
    }
}

void DesktopPowerAssertions::retake(std::uint32_t id) {
    Held& held = held_.at(id);
    const auto attempt = std::make_shared<InhibitionTaker>(held.reason, retakeLimit);
    // An attempt still under way is overtaken by this one; what it may yet be granted goes with it.
    held.retake = attempt;
    const auto remaining = std::make_shared<std::size_t>(attempt->calls().size());
    for (const QDBusPendingCall& call : attempt->calls()) {
        auto* const watcher = new QDBusPendingCallWatcher(call, this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this,
                [this, id, attempt, remaining, watcher] {
                    watcher->deleteLater();
                    if (--*remaining == 0) {
                        finishRetake(id, attempt);
                    }
                });
    }
}

void DesktopPowerAssertions::finishRetake(std::uint32_t id,
                                          const std::shared_ptr<InhibitionTaker>& attempt) {
    InhibitionTaker::Result result = attempt->result();
    const auto found = held_.find(id);
    if (found == held_.end() || found->second.retake != attempt) {
        return; // released or overtaken meanwhile: what was granted is given back here
    }
    Held& held = found->second;
    held.retake.reset();
    if (result.status == 0) {
        // What a means did not grant anew it may still honour from before: logind keeps its locks
        // over a restart. The new ones are held already, so there is no moment without a lock.
        for (const InhibitMeans means : result.refused) {
            const auto old = held.inhibitions.find(means);
            if (old != held.inhibitions.end()) {
                result.inhibitions.insert(held.inhibitions.extract(old));
            }
        }
        held.inhibitions = std::move(result.inhibitions);
        held.pause = firstPause;
        return;
    }
    // The old ones stay: they may still be honoured.
    retryTimer_.start(held.pause);
    held.pause = std::min<std::chrono::milliseconds>(held.pause * 2, longestPause);
}

} // namespace vigilo::platform
