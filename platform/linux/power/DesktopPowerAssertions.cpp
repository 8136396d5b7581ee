#include "platform/linux/power/DesktopPowerAssertions.h"

#include "platform/linux/power/PowerStatus.h"

#include <algorithm>
#include <utility>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;

// A caller is held up for 2 s at most, whatever hangs.
constexpr auto createLimit = 1900ms;
// What has been granted by then is on its way to the caller a little later.
constexpr auto createAnswerLimit = 1700ms;
// A retake holds nobody up.
constexpr auto retakeAnswerLimit = 10s;

// Each has a thread and two connections. Anybody may tell the machine's bus that it has woken.
constexpr int mostRequests = 8;

constexpr auto firstPause = 500ms;
constexpr auto longestPause = 30000ms;

} // namespace

DesktopPowerAssertions::DesktopPowerAssertions(RunLoop& runLoop, bool isSandboxed)
    : runLoop_(runLoop), isSandboxed_(isSandboxed) {}

DesktopPowerAssertions::~DesktopPowerAssertions() {
    for (const auto& [id, held] : held_) {
        if (held.retry) {
            held.retry->invalidate();
        }
    }
}

PowerAssertion DesktopPowerAssertions::create(std::string_view, std::uint32_t,
                                              std::string_view name) {
    const std::string reason(name);
    const auto request = attempt({.reason = reason,
                                  .limit = createAnswerLimit,
                                  .isSandboxed = isSandboxed_,
                                  .needsSessionBus = false},
                                 {});
    std::optional<InhibitionResult> result = request->result(createLimit);
    if (!result) {
        return {.status = powerStatus("org.freedesktop.DBus.Error.NoReply"), .id = 0};
    }
    if (result->status != 0) {
        return {.status = result->status, .id = 0};
    }
    const std::uint32_t id = nextId_++;
    held_[id].reason = reason;
    hold(id, std::move(*result));
    return {.status = 0, .id = id};
}

void DesktopPowerAssertions::release(std::uint32_t id) {
    const auto found = held_.find(id);
    if (found == held_.end()) {
        return;
    }
    if (found->second.retry) {
        found->second.retry->invalidate();
    }
    held_.erase(found);
}

std::shared_ptr<InhibitionAttempt>
DesktopPowerAssertions::attempt(InhibitionRequest request, std::function<void()> onFinished) {
    ++*requestsUnderWay_;
    return std::make_shared<InhibitionAttempt>(
        std::move(request), [count = requestsUnderWay_, onFinished = std::move(onFinished)] {
            if (onFinished) {
                onFinished();
            }
            --*count;
        });
}

/// Keeps what was granted in place of what was held before.
void DesktopPowerAssertions::hold(std::uint32_t id, InhibitionResult result) {
    Held& held = held_.at(id);
    held.watch = std::make_unique<PowerWatch>(result.buses, [this, id] { retake(id, false); });
    for (const auto& [means, inhibition] : result.inhibitions) {
        if (const QString grantor = inhibition->grantor(); !grantor.isEmpty()) {
            held.watch->expectOwner(grantor);
        }
    }
    // What a means did not grant anew it may still honour from before: logind keeps its locks over
    // a restart. The new ones are held already, so there is no moment without a lock.
    for (const InhibitMeans means : result.refused) {
        const auto old = held.inhibitions.find(means);
        if (old != held.inhibitions.end()) {
            result.inhibitions.insert(held.inhibitions.extract(old));
        }
    }
    held.inhibitions = std::move(result.inhibitions);
    held.pause = firstPause;
    if (!result.buses.session->connection().isConnected()) {
        // The session's own means may yet appear.
        retryLater(id, true);
    }
}

void DesktopPowerAssertions::retake(std::uint32_t id, bool needsSessionBus) {
    Held& held = held_.at(id);
    // This attempt is as good as the next one would be, which would only take its place.
    if (held.retry) {
        std::exchange(held.retry, nullptr)->invalidate();
    }
    if (*requestsUnderWay_ >= mostRequests) {
        retryLater(id, needsSessionBus);
        return;
    }
    // The token is what the finished request finds its way back by: it is gone when the assertion
    // is released, overtaken by a later attempt or ended with the program.
    const auto token = std::make_shared<std::weak_ptr<InhibitionAttempt>>();
    const auto started = attempt({.reason = held.reason,
                                  .limit = retakeAnswerLimit,
                                  .isSandboxed = isSandboxed_,
                                  .needsSessionBus = needsSessionBus},
                                 [this, id, token, needsSessionBus, runLoop = &runLoop_] {
                                     runLoop->post([this, id, token, needsSessionBus] {
                                         if (!token->expired()) {
                                             finishRetake(id, needsSessionBus);
                                         }
                                     });
                                 });
    *token = started;
    held.retake = started;
}

void DesktopPowerAssertions::finishRetake(std::uint32_t id, bool needsSessionBus) {
    Held& held = held_.at(id);
    const auto finished = std::exchange(held.retake, nullptr);
    std::optional<InhibitionResult> result = finished->result(std::chrono::milliseconds::zero());
    if (result && result->status == 0) {
        hold(id, std::move(*result));
        return;
    }
    // The old ones stay: they may still be honoured.
    retryLater(id, needsSessionBus);
}

void DesktopPowerAssertions::retryLater(std::uint32_t id, bool needsSessionBus) {
    Held& held = held_.at(id);
    held.retry = runLoop_.scheduleRepeating(
        held.pause, [this, id, needsSessionBus] { retake(id, needsSessionBus); });
    held.pause = std::min<std::chrono::milliseconds>(held.pause * 2, longestPause);
}

} // namespace vigilo::platform
