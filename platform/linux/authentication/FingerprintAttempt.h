#pragma once

#include "platform/linux/authentication/AuthenticationProcess.h"

#include <functional>
#include <memory>
#include <string>

namespace vigilo::platform {

/// Waits for the owner's finger on the reader, beside whatever else is asked. Where there is no
/// reader it says nothing. Destroying it ends the wait. Main thread.
class FingerprintAttempt {
public:
    /// Called from the event loop.
    struct Events {
        /// What is to be shown of it from now on, as it came from the system; nothing when empty.
        std::function<void(const std::string& text, bool isError)> onHint;
        /// It is the owner: the last call, which may destroy the attempt.
        std::function<void()> onOwner;
    };

    explicit FingerprintAttempt(Events events);

private:
    void take(const authentication::Frame& frame);
    void helperEnded(Verdict verdict);

    Events events_;
    bool hasSpoken_ = false;       ///< there is a reader
    AuthenticationProcess helper_; ///< last, so that its events find the rest
};

} // namespace vigilo::platform
