#include "agents/ProcessTableReader.h"

#include "agents/AgentClassification.h"
#include "text/DisplayText.h"
#include "text/Path.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace vigilo {

namespace {

constexpr double busyPercent = 1.0;
constexpr std::string_view noProject = "Local session";

struct Group {
    std::string key;
    AgentSession session;
};

/// The folder's name as raw bytes, so that two names that look alike stay apart.
std::string projectOf(const std::optional<std::string>& currentDirectory) {
    const std::string_view name =
        currentDirectory ? lastPathComponent(*currentDirectory) : std::string_view{};
    return std::string(name.empty() ? noProject : name);
}

} // namespace

std::vector<AgentSession> ProcessTableReader::readAgentProcesses() {
    std::vector<Group> groups;
    std::unordered_map<std::string, std::size_t> groupOfKey;
    table_.visit([&](platform::ProcessEntry& process) {
        const auto name = agentName(process.commandLine());
        if (!name) {
            return;
        }
        const auto details = process.details();
        // The pid may have passed to another process between the two readings.
        if (!details || agentName(process.commandLine()) != name) {
            return;
        }
        const std::string project = projectOf(details->currentDirectory);
        const bool isBusy = details->cpuPercent >= busyPercent;
        std::string key = std::string(*name) + "|" + project;
        const auto [found, isNew] = groupOfKey.try_emplace(key, groups.size());
        if (isNew) {
            std::string shown = displayText(project);
            groups.push_back({.key = std::move(key),
                              .session = {.pid = process.pid(),
                                          .name = std::string(*name),
                                          .project = shown.empty() ? std::string(noProject) : shown,
                                          .runtime = friendlyRuntime(details->elapsed),
                                          .isBusy = isBusy,
                                          .processCount = 1}});
        } else {
            AgentSession& session = groups[found->second].session;
            session.isBusy = session.isBusy || isBusy;
            ++session.processCount;
        }
    });

    std::unordered_map<std::string_view, std::size_t> rankOfKey;
    for (const std::string& key : knownKeys_) {
        rankOfKey.emplace(key, rankOfKey.size());
    }
    const auto rank = [&](const Group& group) {
        const auto found = rankOfKey.find(group.key);
        return found == rankOfKey.end() ? rankOfKey.size() : found->second;
    };
    std::stable_sort(groups.begin(), groups.end(), [&](const Group& left, const Group& right) {
        return rank(left) < rank(right);
    });

    std::vector<std::string> keys;
    std::vector<AgentSession> sessions;
    for (Group& group : groups) {
        keys.push_back(std::move(group.key));
        sessions.push_back(std::move(group.session));
    }
    knownKeys_ = std::move(keys);
    std::stable_sort(sessions.begin(), sessions.end(),
                     [](const AgentSession& left, const AgentSession& right) {
                         if (left.isBusy != right.isBusy) {
                             return left.isBusy;
                         }
                         return left.name < right.name;
                     });
    return sessions;
}

} // namespace vigilo
