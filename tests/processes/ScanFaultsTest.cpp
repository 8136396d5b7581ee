#include "agents/ProcessTableReader.h"
#include "platform/linux/processes/ProcfsProcessTable.h"
#include "tests/processes/RealProcess.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <malloc.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vigilo {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr uid_t nobody = 65534;

/// What a process has that it could leak.
struct Possessions {
    std::ptrdiff_t descriptors = 0;
    std::ptrdiff_t threads = 0;
    std::size_t heap = 0; ///< bytes in use
};

/// Bytes that agents which are not the test's own, and come and go meanwhile, may add: some 16 for
/// each agent that the test starts.
constexpr std::size_t heapAllowance = 4096;

std::ptrdiff_t entries(const char* folder) {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

Possessions possessions() {
    const auto descriptors = entries("/proc/self/fd");
    const auto threads = entries("/proc/self/task");
    return {.descriptors = descriptors, .threads = threads, .heap = mallinfo2().uordblks};
}

void becomeNobody() {
    if (setresgid(nobody, nobody, nobody) != 0 || setresuid(nobody, nobody, nobody) != 0) {
        _exit(EXIT_FAILURE);
    }
}

/// The exit status of a copy of this process that does this.
int statusOf(const std::function<int()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(work());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class ScanFaultsTest : public testing::Test {
protected:
    ScanFaultsTest() {
        std::string name = (fs::temp_directory_path() / "vigilo-scans-XXXXXX").string();
        root = mkdtemp(name.data());
        fs::permissions(root, fs::perms::all);
    }
    ~ScanFaultsTest() override { fs::remove_all(root); }

    /// An agent that sleeps, in a folder that no other process works in, of this user or nobody.
    RealProcess agent(bool isNobodys = false) const {
        if (!isNobodys) {
            return {"/usr/bin/sleep", {"codex", "600"}, root.string()};
        }
        fs::copy_file("/usr/bin/sleep", root / "claude");
        return {"/usr/bin/setpriv",
                {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups",
                 (root / "claude").string(), "600"},
                root.string()};
    }

    /// What the reader says of a process, as soon as it is an agent.
    static std::optional<AgentSession> session(ProcessTableReader& reader, pid_t pid) {
        for (const AgentSession& found : reader.readAgentProcesses()) {
            if (found.pid == pid) {
                return found;
            }
        }
        return std::nullopt;
    }

    static void waitForAgent(pid_t pid) {
        platform::ProcfsProcessTable table;
        ProcessTableReader reader(table);
        for (int attempt = 0; attempt < 6000 && !session(reader, pid); ++attempt) {
            std::this_thread::sleep_for(10ms);
        }
        ASSERT_TRUE(session(reader, pid));
    }

    fs::path root;
};

TEST_F(ScanFaultsTest, aThousandScansAmongProcessesThatComeAndGoLeaveNothingBehind) {
    const auto table = std::make_unique<platform::ProcfsProcessTable>();
    ProcessTableReader reader(*table);
    const std::string prefix = root.filename().string();
    // Each agent lives for some hundredths of a second, in one of fifty projects.
    const auto churn = [&] {
        return RealProcess("/bin/bash",
                           {"bash", "-c",
                            "n=0; while :; do for i in 1 2 3 4; do n=$((n + 1));"
                            "mkdir -p $0$((n % 50)); (cd $0$((n % 50)); exec -a codex sleep 0.0$i)"
                            "& done; wait; done",
                            prefix},
                           root.string());
    };
    std::size_t seen = 0;
    // More often where a busy machine lets only few agents come and go meanwhile.
    const auto scan = [&](std::size_t times) {
        const RealProcess processes = churn();
        seen = 0;
        for (std::size_t count = 0; count < times || (seen <= times && count < 20 * times);
             ++count) {
            seen += reader.readAgentProcesses().size();
            std::this_thread::sleep_for(2ms);
        }
    };
    // The last ones are gone when no process works in the folder any more.
    const auto settle = [&] {
        for (int attempt = 0; attempt < 1000; ++attempt) {
            std::size_t ours = 0;
            for (const AgentSession& found : reader.readAgentProcesses()) {
                ours += found.project.starts_with(prefix) ? 1 : 0;
            }
            if (ours == 0) {
                break;
            }
            std::this_thread::sleep_for(10ms);
        }
    };
    scan(50);
    settle();
    const Possessions before = possessions();
    scan(1000);
    EXPECT_GT(seen, 1000u);
    settle();
    EXPECT_EQ(possessions().descriptors, before.descriptors);
    EXPECT_EQ(possessions().threads, before.threads);
    EXPECT_LE(possessions().heap, before.heap + heapAllowance);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(ScanFaultsTest, anAgentWhoseFolderMayNotBeReadIsALocalSession) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can become another user";
    }
    const RealProcess ours = agent();
    waitForAgent(ours.pid());
    EXPECT_EQ(statusOf([&] {
                  becomeNobody();
                  platform::ProcfsProcessTable table;
                  ProcessTableReader reader(table);
                  const auto found = session(reader, ours.pid());
                  return found && found->project == "Local session" ? 0 : 1;
              }),
              0);
}

TEST_F(ScanFaultsTest, onlyItsOwnUsersAgentsAreFoundWhereOthersAreHidden) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can hide processes";
    }
    const RealProcess hidden = agent();
    const RealProcess visible = agent(true);
    waitForAgent(hidden.pid());
    waitForAgent(visible.pid());
    const std::string proc = (root / "proc").string();
    fs::create_directory(proc);
    constexpr int notAllowed = 77;
    const int status = statusOf([&] {
        if (unshare(CLONE_NEWNS) != 0 ||
            mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("proc", proc.c_str(), "proc", 0, "hidepid=2") != 0) {
            return notAllowed;
        }
        becomeNobody();
        platform::ProcfsProcessTable table(proc);
        ProcessTableReader reader(table);
        const bool isRight = session(reader, visible.pid()) && !session(reader, hidden.pid());
        return isRight ? 0 : 1;
    });
    if (status == notAllowed) {
        GTEST_SKIP() << "mounting a process table is not allowed here";
    }
    EXPECT_EQ(status, 0);
}

} // namespace
} // namespace vigilo
