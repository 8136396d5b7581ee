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

namespace vigilo::platform {

/// What is held, by the means that granted it.
using Inhibitions = std::map<InhibitMeans, std::unique_ptr<Inhibition>>;

/// One request for everything that this machine offers against idle sleep.
struct InhibitionRequest {
    std::string reason;              ///< shown to the user by the desktop
    std::chrono::milliseconds limit; ///< for all answers of the buses and the services
    bool isSandboxed = false;        ///< inside a sandbox only its portal may be asked
    bool needsSessionBus = false;    ///< without a session bus nothing is asked of anybody
};

/// What a request came to.
struct InhibitionResult {
    std::int32_t status = 0;           ///< of the desktop's own means; 0: granted
    Inhibitions inhibitions;           ///< empty unless granted
    std::vector<InhibitMeans> refused; ///< asked in vain
    PowerBuses buses;                  ///< what it was asked over
};

/// Connects to the buses, asks and waits for the answers. It blocks for the limit, or for as long
/// as a bus takes to let it connect where that is longer. Any thread.
InhibitionResult takeInhibitions(const InhibitionRequest& request);

} // namespace vigilo::platform
