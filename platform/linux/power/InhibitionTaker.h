#pragma once

#include "platform/linux/power/InhibitMeans.h"
#include "platform/linux/power/Inhibition.h"
#include "platform/linux/power/PrivateBus.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <QDBusPendingCall>

namespace vigilo::platform {

/// One attempt to take everything that this machine offers against idle sleep, over connections of
/// its own. The calls are sent at once and answered concurrently.
class InhibitionTaker {
public:
    /// What is held, by the means that granted it.
    using Inhibitions = std::map<InhibitMeans, std::unique_ptr<Inhibition>>;

    /// What an attempt came to.
    struct Result {
        std::int32_t status = 0;           ///< of the desktop's own means; 0: granted
        Inhibitions inhibitions;           ///< empty unless granted
        std::vector<InhibitMeans> refused; ///< asked in vain
    };

    /// Sends the calls that this desktop wants, with the reason shown to the user; each fails by
    /// itself after `limit`.
    InhibitionTaker(const std::string& reason, std::chrono::milliseconds limit);

    /// The calls under way; the result can be had once all have finished.
    const std::vector<QDBusPendingCall>& calls() const { return calls_; }

    /// Blocks until every call has finished.
    void wait();

    /// Takes the result; of what was granted nothing is kept when the first means refused.
    Result result() const;

private:
    struct Request {
        InhibitMeans means;
        std::shared_ptr<PrivateBus> bus;
    };

    static std::unique_ptr<Inhibition> granted(const Request& request,
                                               const QDBusPendingCall& call);

    std::vector<Request> requests_;
    std::vector<QDBusPendingCall> calls_;
};

} // namespace vigilo::platform
