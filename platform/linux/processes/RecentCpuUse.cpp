#include "platform/linux/processes/RecentCpuUse.h"

#include <cmath>
#include <utility>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;
using std::chrono::nanoseconds;
using Seconds = std::chrono::duration<double>;

constexpr Seconds timeConstant = 20s;
constexpr auto youngAge = 60s;
constexpr auto longestGap = 30s;

/// How much of an average the last `duration` makes up.
double weight(Seconds duration) {
    return 1 - std::exp(-duration / timeConstant);
}

double toPercent(double share) {
    return std::round(share * 1000) / 10;
}

} // namespace

RecentCpuUse::Average RecentCpuUse::firstSeen(const CpuReading& reading) {
    Average average{.startTime = reading.startTime,
                    .cpuTime = reading.cpuTime,
                    .at = reading.now,
                    .isSeen = true};
    if (reading.age > nanoseconds::zero() && reading.age < youngAge) {
        // Its whole life counts as observed, at an even use.
        average.observed = reading.age;
        average.decayed = Seconds(reading.cpuTime) / Seconds(reading.age) * weight(reading.age);
    }
    return average;
}

double RecentCpuUse::percent(const CpuReading& reading) {
    const auto [found, isNew] = averages_.try_emplace(reading.pid);
    Average& average = found->second;
    const auto passed = reading.now - average.at;
    if (isNew || average.startTime != reading.startTime || passed < nanoseconds::zero() ||
        passed > longestGap || reading.cpuTime < average.cpuTime) {
        average = firstSeen(reading);
    } else if (passed > nanoseconds::zero()) {
        const double use = Seconds(reading.cpuTime - average.cpuTime) / Seconds(passed);
        const double share = weight(passed);
        average.decayed = average.decayed * (1 - share) + use * share;
        average.observed += passed;
        average.cpuTime = reading.cpuTime;
        average.at = reading.now;
    }
    average.isSeen = true;
    return average.observed > nanoseconds::zero()
               ? toPercent(average.decayed / weight(average.observed))
               : 0.0;
}

void RecentCpuUse::forgetUnseen() {
    for (auto entry = averages_.begin(); entry != averages_.end();) {
        if (std::exchange(entry->second.isSeen, false)) {
            ++entry;
        } else {
            entry = averages_.erase(entry);
        }
    }
}

} // namespace vigilo::platform
