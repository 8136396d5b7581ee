#pragma once

#include "platform/ProcessTable.h"
#include "platform/linux/processes/CommandLineReader.h"
#include "platform/linux/processes/RecentCpuUse.h"

#include <array>
#include <cstddef>
#include <string>

namespace vigilo::platform {

/// The processes as /proc shows them, read without starting a child and, for a process whose
/// details nobody asks for, without allocating memory. Order: ascending pid, as the kernel lists.
class ProcfsProcessTable : public ProcessTable {
public:
    /// `root` is where the proc file system is mounted.
    explicit ProcfsProcessTable(std::string root = "/proc") : root_(std::move(root)) {}

    void visit(const Visitor& visitor) override;

private:
    class Entry;

    std::string root_;
    std::array<std::byte, std::size_t{32} * 1024> directoryEntries_;
    CommandLineReader commandLines_;
    RecentCpuUse recentCpuUse_;
};

} // namespace vigilo::platform
