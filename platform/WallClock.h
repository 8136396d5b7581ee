#pragma once

#include <chrono>

namespace vigilo::platform {

/// The time of day as the user's clock shows it: it may jump either way.
class WallClock {
public:
    virtual ~WallClock() = default;

    /// Any thread.
    virtual std::chrono::system_clock::time_point now() const = 0;
};

} // namespace vigilo::platform
