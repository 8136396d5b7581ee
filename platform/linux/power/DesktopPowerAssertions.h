#pragma once

#include "platform/PowerAssertions.h"
#include "platform/RunLoop.h"
#include "platform/linux/power/InhibitionAttempt.h"
#include "platform/linux/power/PowerWatch.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace vigilo::platform {

/// Power assertions over D-Bus, held with whatever the running desktop honours. When a service or a
/// bus that matters comes, goes or restarts, or the machine wakes from suspend, each assertion is
/// taken again, the new lock before the old one is let go; a failure is tried again after growing
/// pauses. While nothing is held there is no connection to any bus. Needs the application object.
/// Main thread only.
class DesktopPowerAssertions : public PowerAssertions {
public:
    /// `isSandboxed`: only the desktop portal may be asked. The run loop outlives it.
    DesktopPowerAssertions(RunLoop& runLoop, bool isSandboxed);
    ~DesktopPowerAssertions() override;

    /// Holds the caller up for 2 s at most.
    PowerAssertion create(std::string_view type, std::uint32_t level,
                          std::string_view name) override;
    void release(std::uint32_t id) override;

    /// Whether a request is still waiting for a bus or a service, on a thread that cannot be ended.
    bool isRequestUnderWay() const { return *requestsUnderWay_ > 0; }

private:
    /// One assertion held.
    struct Held {
        std::string reason;
        Inhibitions inhibitions;
        std::unique_ptr<PowerWatch> watch;
        std::shared_ptr<InhibitionAttempt> retake{}; ///< the latest attempt under way
        std::shared_ptr<Timer> retry{};              ///< before the next attempt
        std::chrono::milliseconds pause{};           ///< before the one after that
    };

    std::shared_ptr<InhibitionAttempt> attempt(InhibitionRequest request,
                                               std::function<void()> onFinished);
    void hold(std::uint32_t id, InhibitionResult result);
    // `needsSessionBus`: ask nobody before there is a session bus, since all else is held already.
    void retake(std::uint32_t id, bool needsSessionBus);
    void finishRetake(std::uint32_t id, bool needsSessionBus);
    void retryLater(std::uint32_t id, bool needsSessionBus);

    RunLoop& runLoop_;
    bool isSandboxed_;
    std::map<std::uint32_t, Held> held_;
    std::uint32_t nextId_ = 1;
    std::shared_ptr<std::atomic_int> requestsUnderWay_ = std::make_shared<std::atomic_int>(0);
};

} // namespace vigilo::platform
