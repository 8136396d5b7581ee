#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vigilo::platform {

/// How many words of a command line are of interest; a table may leave out those that follow.
inline constexpr std::size_t examinedWords = 4;

/// What is read of a process only when its command line is of interest.
struct ProcessDetails {
    std::string elapsed;   ///< time since its start as [[days-]hours:]minutes:seconds
    double cpuPercent = 0; ///< recent use of one core in per cent, to one decimal
    /// Absolute path, raw bytes; none when it cannot be read.
    std::optional<std::string> currentDirectory;

    bool operator==(const ProcessDetails&) const = default;
};

/// One process during a visit. Valid only until the visitor returns.
class ProcessEntry {
public:
    virtual ~ProcessEntry() = default;

    virtual std::int64_t pid() const = 0;

    /// The arguments joined by blanks, raw bytes; possibly cut after `examinedWords` words. After
    /// `details()` it is that of the very process that those details belong to.
    virtual std::string_view commandLine() const = 0;

    /// Reads the rest. None when the process has ended, is a zombie, or its pid now names another
    /// process.
    virtual std::optional<ProcessDetails> details() = 0;
};

/// The machine's processes, of every user. Used on one background thread at a time.
class ProcessTable {
public:
    using Visitor = std::function<void(ProcessEntry&)>;

    virtual ~ProcessTable() = default;

    /// Calls `visitor` for each process, in the table's own order. A table that cannot be read
    /// visits nothing.
    virtual void visit(const Visitor& visitor) = 0;
};

} // namespace vigilo::platform
