#pragma once

#include "platform/linux/power/InhibitionRequest.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace vigilo::platform {

/// A request under way on a thread of its own, so that a bus or a service that does not answer
/// holds nobody up. Dropping it gives back whatever it is granted later.
class InhibitionAttempt {
public:
    /// Starts the request. `onFinished`, which may be empty, is called on the attempt's own thread
    /// when the result is there or, after the attempt was dropped, has been given back.
    InhibitionAttempt(InhibitionRequest request, const std::function<void()>& onFinished);

    InhibitionAttempt(const InhibitionAttempt&) = delete;
    InhibitionAttempt& operator=(const InhibitionAttempt&) = delete;
    ~InhibitionAttempt();

    /// Takes the result, waiting `limit` at most for it; none when it is not there by then.
    std::optional<InhibitionResult> result(std::chrono::milliseconds limit);

private:
    struct State;
    static void run(const std::shared_ptr<State>& state, const InhibitionRequest& request,
                    const std::function<void()>& onFinished);

    std::shared_ptr<State> state_;
};

} // namespace vigilo::platform
