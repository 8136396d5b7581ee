#pragma once

#include "platform/WallClock.h"

#include <chrono>

namespace vigilo::fakes {

/// A clock that a test sets, forwards and backwards.
class FakeWallClock : public platform::WallClock {
public:
    std::chrono::system_clock::time_point now() const override {
        now_ += timePerRead;
        return now_;
    }

    void advance(std::chrono::system_clock::duration duration) { now_ += duration; }

    /// How much time passes between one look at the clock and the next.
    std::chrono::microseconds timePerRead{0};

private:
    mutable std::chrono::system_clock::time_point now_{std::chrono::hours{24 * 365 * 50}};
};

} // namespace vigilo::fakes
