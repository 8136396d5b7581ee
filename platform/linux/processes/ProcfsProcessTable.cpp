#include "platform/linux/processes/ProcfsProcessTable.h"

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/processes/ProcessDirectory.h"
#include "text/Numbers.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <optional>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace vigilo::platform {

namespace {

using std::chrono::nanoseconds;
using std::chrono::seconds;

nanoseconds clockTime(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

nanoseconds ticksTime(std::uint64_t ticks) {
    static const double ticksPerSecond = static_cast<double>(sysconf(_SC_CLK_TCK));
    return std::chrono::duration_cast<nanoseconds>(
        std::chrono::duration<double>(static_cast<double>(ticks) / ticksPerSecond));
}

/// The processor time that a process has used, from its own clock; its ticks are too coarse for the
/// few seconds between two scans.
std::optional<nanoseconds> processCpuTime(pid_t pid) {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(pid, &clock) != 0 || clock_gettime(clock, &time) != 0) {
        return std::nullopt;
    }
    return seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

} // namespace

class ProcfsProcessTable::Entry : public ProcessEntry {
public:
    Entry(ProcfsProcessTable& table, int proc, const char* name, std::int64_t pid)
        : table_(table), proc_(proc), name_(name), pid_(pid) {
        std::array<char, 32> path{};
        std::snprintf(path.data(), path.size(), "%s/cmdline", name);
        commandLine_ = table_.commandLines_.read(proc, path.data());
    }

    std::int64_t pid() const override { return pid_; }

    std::string_view commandLine() const override { return commandLine_; }

    std::optional<ProcessDetails> details() override {
        const ProcessDirectory directory(proc_, name_);
        if (!directory) {
            return std::nullopt;
        }
        commandLine_ = table_.commandLines_.read(directory.descriptor(), "cmdline");
        const auto cpuTime = processCpuTime(static_cast<pid_t>(pid_));
        ProcessDetails details{
            .elapsed = {}, .cpuPercent = 0, .currentDirectory = directory.currentDirectory()};
        // Last, so that all of the above is known to be of a process that still lived.
        const auto stat = directory.stat();
        if (!stat || stat->state == 'Z' || stat->state == 'X') {
            return std::nullopt;
        }
        const nanoseconds now = clockTime(CLOCK_BOOTTIME);
        const nanoseconds age = now - ticksTime(stat->startTicks);
        details.elapsed = elapsedText(std::chrono::duration_cast<seconds>(age));
        details.cpuPercent = table_.recentCpuUse_.percent(
            {.pid = pid_,
             .startTime = stat->startTicks,
             .age = age,
             .cpuTime = cpuTime.value_or(ticksTime(stat->userTicks + stat->systemTicks)),
             .now = now});
        return details;
    }

private:
    ProcfsProcessTable& table_;
    int proc_;
    const char* name_;
    std::int64_t pid_;
    std::string_view commandLine_;
};

void ProcfsProcessTable::visit(const Visitor& visitor) {
    const FileDescriptor proc(open(root_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!proc) {
        return;
    }
    while (true) {
        const ssize_t size =
            getdents64(proc.number(), directoryEntries_.data(), directoryEntries_.size());
        if (size <= 0) {
            break;
        }
        for (std::size_t offset = 0; offset < static_cast<std::size_t>(size);) {
            const std::byte* const record = directoryEntries_.data() + offset;
            unsigned short recordLength = 0;
            std::memcpy(&recordLength, record + offsetof(dirent64, d_reclen), sizeof recordLength);
            offset += recordLength;
            const auto* const name =
                reinterpret_cast<const char*>(record + offsetof(dirent64, d_name));
            const auto pid = *name >= '0' && *name <= '9' ? decimalInteger(name) : std::nullopt;
            if (!pid) {
                continue;
            }
            Entry entry(*this, proc.number(), name, *pid);
            if (!entry.commandLine().empty()) {
                visitor(entry);
            }
        }
    }
    recentCpuUse_.forgetUnseen();
}

} // namespace vigilo::platform
