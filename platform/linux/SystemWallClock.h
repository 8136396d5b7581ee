#pragma once

#include "platform/WallClock.h"

namespace vigilo::platform {

/// The machine's clock of the day.
class SystemWallClock : public WallClock {
public:
    std::chrono::system_clock::time_point now() const override {
        return std::chrono::system_clock::now();
    }
};

} // namespace vigilo::platform
