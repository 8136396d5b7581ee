#pragma once

#include "platform/ProcessTable.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vigilo::fakes {

/// A table of made-up processes that knows whose details were asked for.
class FakeProcessTable : public platform::ProcessTable {
public:
    struct Process {
        std::int64_t pid = 0;
        std::string commandLine;
        std::optional<platform::ProcessDetails> details;
        std::optional<std::string> laterCommandLine; ///< once its details have been read
    };

    void visit(const Visitor& visitor) override {
        for (const Process& process : processes) {
            Entry entry(process, detailed);
            visitor(entry);
        }
    }

    std::vector<Process> processes;
    std::vector<std::int64_t> detailed;

private:
    class Entry : public platform::ProcessEntry {
    public:
        Entry(const Process& process, std::vector<std::int64_t>& detailed)
            : process_(process), detailed_(detailed), commandLine_(process.commandLine) {}

        std::int64_t pid() const override { return process_.pid; }
        std::string_view commandLine() const override { return commandLine_; }

        std::optional<platform::ProcessDetails> details() override {
            detailed_.push_back(process_.pid);
            commandLine_ = process_.laterCommandLine.value_or(process_.commandLine);
            return process_.details;
        }

    private:
        const Process& process_;
        std::vector<std::int64_t>& detailed_;
        std::string commandLine_;
    };
};

} // namespace vigilo::fakes
