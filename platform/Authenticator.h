#pragma once

#include <functional>
#include <string>

namespace vigilo::platform {

/// Proves that the person at the computer is its owner.
class Authenticator {
public:
    virtual ~Authenticator() = default;

    /// Starts one attempt: the system's prompt shows `reason` and a button named `cancelTitle` that
    /// gives up. `reply` is called once, on any thread, with whether the owner was proved; a prompt
    /// that was cancelled, failed or could not be shown counts as not proved. A second attempt ends
    /// the first as not proved. Main thread.
    virtual void evaluate(const std::string& reason, const std::string& cancelTitle,
                          std::function<void(bool isOwner)> reply) = 0;
};

} // namespace vigilo::platform
