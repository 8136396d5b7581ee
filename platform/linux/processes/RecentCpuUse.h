#pragma once

#include <chrono>
#include <cstdint>
#include <unordered_map>

namespace vigilo::platform {

/// One look at a process's use of the processor.
struct CpuReading {
    std::int64_t pid = 0;
    std::uint64_t startTime = 0; ///< in clock ticks; with the pid it names the process
    std::chrono::nanoseconds age{};
    std::chrono::nanoseconds cpuTime{}; ///< used since its start, by all its threads
    std::chrono::nanoseconds now{};     ///< of a clock that also runs while the machine sleeps
};

/// How much of one core each process used lately: a decaying average with a time constant of 20 s.
/// The average over the whole life, which Linux's own listing shows, would call a process busy for
/// minutes after it stopped working and idle for hours after it began.
class RecentCpuUse {
public:
    /// Takes a reading and returns the recent use in per cent of one core, to one decimal. A
    /// process first seen young (under 60 s) reports its average so far; one first seen older
    /// reports 0 until its second reading. A gap of over 30 s, or processor time that runs
    /// backwards, counts as seen for the first time.
    double percent(const CpuReading& reading);

    /// Forgets the processes that had no reading since the last call.
    void forgetUnseen();

private:
    struct Average {
        std::uint64_t startTime = 0;
        std::chrono::nanoseconds cpuTime{};
        std::chrono::nanoseconds at{};
        std::chrono::duration<double> observed{};
        double decayed = 0; ///< share of one core
        bool isSeen = false;
    };

    static Average firstSeen(const CpuReading& reading);

    std::unordered_map<std::int64_t, Average> averages_;
};

} // namespace vigilo::platform
