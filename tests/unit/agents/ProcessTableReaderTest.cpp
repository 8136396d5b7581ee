#include "agents/ProcessTableReader.h"
#include "tests/fakes/FakeProcessTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace vigilo {
namespace {

class ProcessTableReaderTest : public testing::Test {
protected:
    void add(std::int64_t pid, std::string commandLine, std::string elapsed, double cpuPercent,
             std::optional<std::string> directory) {
        table.processes.push_back(
            {.pid = pid,
             .commandLine = std::move(commandLine),
             .details = platform::ProcessDetails{.elapsed = std::move(elapsed),
                                                 .cpuPercent = cpuPercent,
                                                 .currentDirectory = std::move(directory)},
             .laterCommandLine = std::nullopt});
    }

    /// "name|project" of each session, in order.
    std::vector<std::string> read() {
        std::vector<std::string> keys;
        for (const AgentSession& session : reader.readAgentProcesses()) {
            keys.push_back(session.name + "|" + session.project);
        }
        return keys;
    }

    using Keys = std::vector<std::string>;

    fakes::FakeProcessTable table;
    ProcessTableReader reader{table};
};

TEST_F(ProcessTableReaderTest, findsNothingWhereThereIsNoAgent) {
    EXPECT_TRUE(reader.readAgentProcesses().empty());
    add(1, "/sbin/init", "01:00", 0, "/");
    add(2, "/bin/zsh -l", "01:00", 50, "/home");
    EXPECT_TRUE(reader.readAgentProcesses().empty());
    EXPECT_TRUE(table.detailed.empty());
}

TEST_F(ProcessTableReaderTest, describesASession) {
    add(501, "/opt/homebrew/bin/claude --resume", "01:05:03", 12.5, "/Users/me/src/webapp");
    EXPECT_EQ(reader.readAgentProcesses(), (std::vector<AgentSession>{{.pid = 501,
                                                                       .name = "Claude Code",
                                                                       .project = "webapp",
                                                                       .runtime = "1h 5m",
                                                                       .isBusy = true,
                                                                       .processCount = 1}}));
}

TEST_F(ProcessTableReaderTest, foldsTheProcessesOfOneProjectAndKeepsTheFirst) {
    add(7, "codex", "05:00", 0.0, "/a/api");
    add(3, "codex", "2-01:00:00", 3.0, "/b/api/");
    add(9, "codex", "09:00", 0.0, "/a/api");
    EXPECT_EQ(reader.readAgentProcesses(), (std::vector<AgentSession>{{.pid = 7,
                                                                       .name = "Codex",
                                                                       .project = "api",
                                                                       .runtime = "5m",
                                                                       .isBusy = true,
                                                                       .processCount = 3}}));
}

TEST_F(ProcessTableReaderTest, isBusyFromOnePerCentOn) {
    for (const auto& [cpuPercent, isBusy] : std::vector<std::pair<double, bool>>{
             {1.0, true}, {0.9, false}, {std::numeric_limits<double>::quiet_NaN(), false}}) {
        table.processes.clear();
        add(1, "codex", "00:10", cpuPercent, "/a");
        EXPECT_EQ(reader.readAgentProcesses().at(0).isBusy, isBusy) << cpuPercent;
    }
}

TEST_F(ProcessTableReaderTest, callsAFolderThatHasNoNameALocalSession) {
    add(1, "codex", "00:10", 0, std::nullopt);
    add(2, "codex", "00:10", 0, "/");
    add(3, "codex", "00:10", 0, "");
    add(4, "codex", "00:10", 0, "/x/\n");
    const auto sessions = reader.readAgentProcesses();
    ASSERT_EQ(sessions.size(), 2u);
    EXPECT_EQ(sessions[0].processCount, 3);
    EXPECT_EQ(sessions[0].project, "Local session");
    EXPECT_EQ(sessions[1].project, "Local session");
}

TEST_F(ProcessTableReaderTest, makesAFoldersNameFitToBeShownAndKeepsFoldersApart) {
    add(1, "codex", "00:10", 0, "/x/a\xFF");
    add(2, "codex", "00:10", 0, "/x/a\xFE");
    EXPECT_EQ(read(), (Keys{"Codex|a\uFFFD", "Codex|a\uFFFD"}));
}

TEST_F(ProcessTableReaderTest, putsBusySessionsFirstAndThenGoesByAgent) {
    add(1, "codex", "00:10", 0, "/idle");
    add(2, "claude", "00:10", 0, "/idle");
    add(3, "codex", "00:10", 5, "/busy");
    add(4, "claude", "00:10", 5, "/busy");
    EXPECT_EQ(read(), (Keys{"Claude Code|busy", "Codex|busy", "Claude Code|idle", "Codex|idle"}));
}

TEST_F(ProcessTableReaderTest, keepsTheOrderFirstSeenFromScanToScan) {
    add(1, "codex", "00:10", 0, "/z");
    add(2, "codex", "00:10", 0, "/a");
    EXPECT_EQ(read(), (Keys{"Codex|z", "Codex|a"}));
    std::reverse(table.processes.begin(), table.processes.end());
    add(3, "codex", "00:10", 0, "/m");
    std::rotate(table.processes.begin(), table.processes.end() - 1, table.processes.end());
    EXPECT_EQ(read(), (Keys{"Codex|z", "Codex|a", "Codex|m"}));
    std::erase_if(table.processes, [](const auto& process) { return process.pid == 1; });
    EXPECT_EQ(read(), (Keys{"Codex|a", "Codex|m"}));
    add(4, "codex", "00:10", 0, "/z");
    EXPECT_EQ(read(), (Keys{"Codex|a", "Codex|m", "Codex|z"}));
}

TEST_F(ProcessTableReaderTest, leavesOutAProcessThatHasGoneMeanwhile) {
    table.processes.push_back(
        {.pid = 1, .commandLine = "codex", .details = {}, .laterCommandLine = {}});
    EXPECT_EQ(read(), Keys{});
}

TEST_F(ProcessTableReaderTest, leavesOutAPidThatWasGivenToAnother) {
    add(1, "codex", "00:10", 0, "/x");
    table.processes[0].laterCommandLine = "/bin/ls";
    EXPECT_EQ(read(), Keys{});
    table.processes[0].laterCommandLine = "codex resume";
    EXPECT_EQ(read(), (Keys{"Codex|x"}));
}

} // namespace
} // namespace vigilo
