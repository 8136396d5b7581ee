// A day of random use and random faults, with what the controller promises checked at every step.
// Each day is made from a seed; VIGILO_SOAK_SEED repeats the day of one seed.
#include "tests/unit/core/SimulatedDay.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace vigilo {
namespace {

std::vector<std::uint64_t> seeds() {
    if (const char* wanted = std::getenv("VIGILO_SOAK_SEED")) {
        return {std::stoull(wanted)};
    }
    return {1, 2, 3, 5, 8, 13, 21, 34};
}

TEST(AwakeControllerSoak, keepsItsPromisesOverADayOfRandomUseAndFaults) {
    for (const std::uint64_t seed : seeds()) {
        SimulatedDay day(seed);
        day.run();
        if (HasFailure()) {
            FAIL() << "Repeat this day with VIGILO_SOAK_SEED=" << seed << ". It ended with:\n"
                   << day.history();
        }
        // A day in which little happened would prove little.
        EXPECT_GT(day.expiries(), 10) << "seed " << seed;
        EXPECT_GT(day.refusals(), 10) << "seed " << seed;
        EXPECT_GT(day.callsFromCallbacks(), 100) << "seed " << seed;
    }
}

} // namespace
} // namespace vigilo
