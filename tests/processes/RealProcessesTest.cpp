#include "agents/ProcessTableReader.h"
#include "platform/linux/processes/ProcfsProcessTable.h"
#include "platform/linux/processes/PsProcessTable.h"
#include "tests/processes/RealProcess.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace vigilo {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

/// Folders and programs of a test's own, so that agents that really run here do not count.
class RealProcessesTest : public testing::Test {
protected:
    RealProcessesTest() {
        std::string name = (fs::temp_directory_path() / "vigilo-processes-XXXXXX").string();
        root = mkdtemp(name.data());
    }
    ~RealProcessesTest() override { fs::remove_all(root); }

    /// A folder with a name that no other process works in.
    std::string folder(const std::string& name) {
        const fs::path path = root / (root.filename().string() + name);
        fs::create_directories(path);
        return path.string();
    }

    std::string project(const std::string& name) { return root.filename().string() + name; }

    /// The sleeping program under another name.
    std::string program(const std::string& name) {
        const fs::path path = root / name;
        fs::copy_file("/usr/bin/sleep", path, fs::copy_options::skip_existing);
        return path.string();
    }

    std::vector<AgentSession> ours(platform::ProcessTable& table) {
        std::vector<AgentSession> found = ProcessTableReader(table).readAgentProcesses();
        std::erase_if(found, [&](const AgentSession& session) {
            return !session.project.starts_with(root.filename().string());
        });
        return found;
    }

    std::vector<AgentSession> ours() { return ours(procfs); }

    /// What is found once `count` sessions are, or after a minute.
    std::vector<AgentSession> oursWhenThereAre(std::size_t count) {
        auto found = ours();
        for (int attempt = 0; attempt < 6000 && found.size() != count; ++attempt) {
            std::this_thread::sleep_for(10ms);
            found = ours();
        }
        return found;
    }

    fs::path root;
    platform::ProcfsProcessTable procfs;
    platform::PsProcessTable ps;
};

TEST_F(RealProcessesTest, findsARenamedProgram) {
    const RealProcess process(program("claude"), {"claude", "600"}, folder("webapp"));
    const auto found = ours();
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].pid, process.pid());
    EXPECT_EQ(found[0].name, "Claude Code");
    EXPECT_EQ(found[0].project, project("webapp"));
    EXPECT_EQ(found[0].processCount, 1);
}

TEST_F(RealProcessesTest, goesByTheNameThatAProcessGivesItself) {
    const RealProcess process("/usr/bin/sleep", {"/opt/bin/codex", "600"}, folder("api"));
    const RealProcess other(program("codex"), {"something", "600"}, folder("api"));
    const auto found = ours();
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].pid, process.pid());
}

TEST_F(RealProcessesTest, agreesWithTheListing) {
    std::vector<RealProcess> processes;
    processes.emplace_back(program("claude"), std::vector<std::string>{"claude", "600"},
                           folder("one"));
    processes.emplace_back(program("claude"), std::vector<std::string>{"claude", "600"},
                           folder("one"));
    processes.emplace_back("/usr/bin/sleep", std::vector<std::string>{"codex", "600"},
                           folder("two"));
    processes.emplace_back("/usr/bin/tail",
                           std::vector<std::string>{"node", "-f", "/dev/null", "codex.mjs"},
                           folder("three"));
    processes.emplace_back(
        "/usr/bin/tail", std::vector<std::string>{"node", "-f", "/dev/null", "/dev/null", "codex"},
        folder("five"));
    const auto key = [](const AgentSession& session) {
        return std::tuple(session.name, session.project, session.pid, session.processCount);
    };
    std::set<std::tuple<std::string, std::string, std::int64_t, std::int64_t>> direct;
    std::set<std::tuple<std::string, std::string, std::int64_t, std::int64_t>> listed;
    for (const AgentSession& session : ours(procfs)) {
        direct.insert(key(session));
    }
    for (const AgentSession& session : ours(ps)) {
        listed.insert(key(session));
    }
    EXPECT_EQ(direct, listed);
    EXPECT_EQ(direct.size(), 3u);
}

TEST_F(RealProcessesTest, readsArgumentsOfAnyLength) {
    const std::string longWord(102400, 'x');
    const RealProcess late("/usr/bin/tail",
                           {"node", "-f", "/dev/null", "/dev/null", longWord, "codex"},
                           folder("late"));
    const RealProcess cut("/usr/bin/sleep", {"sh", "600" + std::string(20480, ' '), "codex"},
                          folder("cut"));
    const RealProcess found("/usr/bin/tail", {"/bin/codex", "-f", "/dev/null", longWord},
                            folder("found"));
    const auto sessions = ours();
    ASSERT_EQ(sessions.size(), 1u);
    EXPECT_EQ(sessions[0].pid, found.pid());
}

TEST_F(RealProcessesTest, doesNotMatchTheBeginningOfAWordThatGoesOnBeyondWhatIsRead) {
    const std::vector<std::string> before{"x", "-f", "/dev/null"};
    constexpr std::size_t limit = 16384;
    constexpr std::size_t lengthBefore = 15; // each word with the NUL that ends it
    // "/codex" takes the last bytes that are read, and the word goes on after them.
    const std::string filler(limit - lengthBefore - 6, 'y');
    std::vector<std::string> cut = before;
    cut.push_back(filler + "/codexx");
    const RealProcess unfinished("/usr/bin/tail", cut, folder("cut"));
    EXPECT_TRUE(ours().empty());
    std::vector<std::string> whole = before;
    whole.push_back(filler.substr(1) + "/codex");
    const RealProcess finished("/usr/bin/tail", whole, folder("whole"));
    const auto sessions = ours();
    ASSERT_EQ(sessions.size(), 1u);
    EXPECT_EQ(sessions[0].pid, finished.pid());
}

TEST_F(RealProcessesTest, takesALineFeedForABlank) {
    const RealProcess process("/usr/bin/sleep", {"sleep\n1 00:01 9.9 codex", "600"},
                              folder("forged"));
    // The joined words are "sleep", "1", "00:01", "9.9", ...: the fifth is not looked at.
    EXPECT_TRUE(ours().empty());
}

TEST_F(RealProcessesTest, isNotHiddenByBytesThatAreNoText) {
    const RealProcess strange("/usr/bin/sleep", {"\xFF\xFE", "600"}, folder("strange"));
    const RealProcess agent("/usr/bin/sleep", {"codex", "600"}, folder("a\xFF"));
    const auto found = ours();
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].project, project("a\uFFFD"));
}

TEST_F(RealProcessesTest, keepsTheNameOfAFolderThatWasDeleted) {
    const std::string gone = folder("gone");
    const std::string marked = folder("kept (deleted)");
    const RealProcess one("/usr/bin/sleep", {"codex", "600"}, gone);
    const RealProcess two("/usr/bin/sleep", {"codex", "600"}, marked);
    fs::remove(gone);
    std::set<std::string> projects;
    for (const AgentSession& session : ours()) {
        projects.insert(session.project);
    }
    EXPECT_EQ(projects, (std::set<std::string>{project("gone"), project("kept (deleted)")}));
}

TEST_F(RealProcessesTest, leavesOutZombies) {
    const RealProcess process("/usr/bin/sleep", {"codex", "600"}, folder("dead"));
    EXPECT_EQ(ours().size(), 1u);
    process.becomeZombie();
    EXPECT_TRUE(ours().empty());
}

TEST_F(RealProcessesTest, findsTheProcessesOfOtherUsers) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can start a process of another user";
    }
    fs::permissions(root, fs::perms::all);
    const RealProcess process(
        "/usr/bin/setpriv",
        {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", program("claude"), "600"},
        folder("theirs"));
    // setpriv replaces itself by the program; before that it is no agent.
    EXPECT_EQ(oursWhenThereAre(1).size(), 1u);
}

TEST_F(RealProcessesTest, countsAProcessOnceHoweverManyThreadsItHas) {
    const RealProcess process(PROCESS_DOUBLE, {"codex", "threads", "8"}, folder("threads"));
    const auto found = ours();
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].pid, process.pid());
    EXPECT_EQ(found[0].processCount, 1);
}

TEST_F(RealProcessesTest, goesByATitleThatAProcessWritesOverItsArguments) {
    const RealProcess becomes(PROCESS_DOUBLE, {"something-long", "title", "codex: working"},
                              folder("agent"));
    const RealProcess still(PROCESS_DOUBLE, {"something-long", "title", "codex working"},
                            folder("other"));
    const auto found = oursWhenThereAre(1);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].pid, still.pid());
}

TEST_F(RealProcessesTest, findsAProcessInsideAnotherPidNamespace) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can make a PID namespace here";
    }
    const RealProcess process(
        "/usr/bin/unshare",
        {"unshare", "--pid", "--fork", "--kill-child", program("claude"), "600"}, folder("inside"));
    const auto found = oursWhenThereAre(1);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].project, project("inside"));
    EXPECT_NE(found[0].pid, process.pid());
}

TEST_F(RealProcessesTest, findsTwoAmongTenThousand) {
    const RealProcess crowd(PROCESS_DOUBLE, {"crowd", "children", "10000"}, folder("crowd"));
    const RealProcess one(program("claude"), {"claude", "600"}, folder("one"));
    const RealProcess two(program("claude"), {"claude", "600"}, folder("two"));
    for (int attempt = 0; attempt < 6000 && crowd.childCount() < 10000; ++attempt) {
        std::this_thread::sleep_for(10ms);
    }
    ASSERT_EQ(crowd.childCount(), 10000u);
    EXPECT_EQ(ours().size(), 2u);
}

TEST_F(RealProcessesTest, tellsABusyProcessFromAnIdleOne) {
    const RealProcess idle("/usr/bin/sleep", {"codex", "600"}, folder("idle"));
    const RealProcess busy("/bin/sh", {"codex", "-c", "while :; do :; done"}, folder("busy"));
    // What an idle process took to start counts, too, until it is a small part of its life; and a
    // busy one may not have had its turn yet.
    const auto areToldApart = [&](const std::vector<AgentSession>& found) {
        return found.size() == 2 && found[0].project == project("busy") && found[0].isBusy &&
               !found[1].isBusy;
    };
    auto found = ours();
    for (int attempt = 0; attempt < 6000 && !areToldApart(found); ++attempt) {
        std::this_thread::sleep_for(10ms);
        found = ours();
    }
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].project, project("busy"));
    EXPECT_TRUE(found[0].isBusy);
    EXPECT_FALSE(found[1].isBusy);
}

TEST_F(RealProcessesTest, startsNoChild) {
    // A child would be listed as one of ours while it runs, and left for waitpid(2) afterwards.
    ours();
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(RealProcessesTest, findsNothingWhereThereIsNoProcessTable) {
    platform::ProcfsProcessTable nowhere((root / "nowhere").string());
    platform::PsProcessTable broken({.ps = (root / "ps").string(), .lsof = "/bin/false"});
    EXPECT_TRUE(ProcessTableReader(nowhere).readAgentProcesses().empty());
    EXPECT_TRUE(ProcessTableReader(broken).readAgentProcesses().empty());
}

} // namespace
} // namespace vigilo
