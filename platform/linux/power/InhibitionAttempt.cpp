#include "platform/linux/power/InhibitionAttempt.h"

#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace vigilo::platform {

struct InhibitionAttempt::State {
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<InhibitionResult> result;
    bool isDropped = false;
};

InhibitionAttempt::InhibitionAttempt(InhibitionRequest request,
                                     const std::function<void()>& onFinished)
    : state_(std::make_shared<State>()) {
    try {
        std::thread([state = state_, request = std::move(request), onFinished] {
            run(state, request, onFinished);
        }).detach();
    } catch (const std::system_error&) {
        state_->result =
            InhibitionResult{.status = EAGAIN, .inhibitions = {}, .refused = {}, .buses = {}};
        if (onFinished) {
            onFinished();
        }
    }
}

InhibitionAttempt::~InhibitionAttempt() {
    std::optional<InhibitionResult> unwanted;
    const std::lock_guard lock(state_->mutex);
    state_->isDropped = true;
    unwanted.swap(state_->result);
}

std::optional<InhibitionResult> InhibitionAttempt::result(std::chrono::milliseconds limit) {
    std::unique_lock lock(state_->mutex);
    state_->changed.wait_for(lock, limit, [this] { return state_->result.has_value(); });
    return std::exchange(state_->result, std::nullopt);
}

void InhibitionAttempt::run(const std::shared_ptr<State>& state, const InhibitionRequest& request,
                            const std::function<void()>& onFinished) {
    {
        // Given back at the end of this block when nobody wants it any more: once the end is told
        // of, the program may end, too.
        std::optional<InhibitionResult> result = takeInhibitions(request);
        const std::lock_guard lock(state->mutex);
        if (!state->isDropped) {
            state->result.swap(result);
        }
    }
    state->changed.notify_all();
    if (onFinished) {
        onFinished();
    }
}

} // namespace vigilo::platform
