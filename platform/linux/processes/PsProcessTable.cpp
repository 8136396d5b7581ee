#include "platform/linux/processes/PsProcessTable.h"

#include "platform/linux/processes/ChildProcess.h"
#include "platform/linux/processes/ProcessListing.h"

#include <optional>
#include <utility>

#include <unistd.h>

namespace vigilo::platform {

namespace {

class ListedEntry : public ProcessEntry {
public:
    ListedEntry(const ListedProcess& process, const std::string& lsof)
        : process_(process), lsof_(lsof) {}

    std::int64_t pid() const override { return process_.pid; }

    std::string_view commandLine() const override { return process_.command; }

    std::optional<ProcessDetails> details() override {
        return ProcessDetails{.elapsed = std::string(process_.elapsed),
                              .cpuPercent = process_.cpuPercent,
                              .currentDirectory = currentDirectory()};
    }

private:
    std::optional<std::string> currentDirectory() const {
        const auto output =
            outputOf(lsof_, {"-a", "-p", std::to_string(process_.pid), "-d", "cwd", "-Fn"});
        const auto path = output ? parseOpenFileName(*output) : std::nullopt;
        return path ? std::optional(std::string(*path)) : std::nullopt;
    }

    const ListedProcess& process_;
    const std::string& lsof_;
};

std::string installedLsof() {
    constexpr const char* usual = "/usr/sbin/lsof";
    return access(usual, X_OK) == 0 ? usual : "/usr/bin/lsof";
}

} // namespace

PsProcessTable::PsProcessTable() : PsProcessTable({.ps = "/bin/ps", .lsof = installedLsof()}) {}

PsProcessTable::PsProcessTable(Tools tools) : tools_(std::move(tools)) {}

void PsProcessTable::visit(const Visitor& visitor) {
    const auto listing = outputOf(tools_.ps, {"-axo", "pid=,etime=,%cpu=,command="});
    if (!listing) {
        return;
    }
    for (const ListedProcess& process : parseProcessListing(*listing)) {
        ListedEntry entry(process, tools_.lsof);
        visitor(entry);
    }
}

} // namespace vigilo::platform
