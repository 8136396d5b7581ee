#include "platform/linux/processes/PsProcessTable.h"
#include "agents/ProcessTableReader.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace vigilo {
namespace {

namespace fs = std::filesystem;

/// Tools of the test's own, which write down how they were called.
class PsProcessTableTest : public testing::Test {
protected:
    PsProcessTableTest() {
        std::string name = (fs::temp_directory_path() / "vigilo-ps-XXXXXX").string();
        root = mkdtemp(name.data());
        write("listing", "");
        tool("ps", "cat '" + path("listing") + "'");
        tool("lsof", "printf 'p%s\\nfcwd\\nn/Users/me/src/webapp\\n' \"$3\"");
    }
    ~PsProcessTableTest() override { fs::remove_all(root); }

    std::string path(const std::string& name) const { return (root / name).string(); }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
    }

    /// A tool that does this after it has noted its arguments, a call a line.
    void tool(const std::string& name, const std::string& commands) const {
        write(name,
              "#!/bin/sh\necho \"$#:$*\" >>'" + path(name + ".calls") + "'\n" + commands + "\n");
        fs::permissions(path(name), fs::perms::owner_all);
    }

    std::string calls(const std::string& name) const {
        std::stringstream text;
        text << std::ifstream(path(name + ".calls")).rdbuf();
        return text.str();
    }

    std::vector<AgentSession> read() const {
        platform::PsProcessTable table({.ps = path("ps"), .lsof = path("lsof")});
        return ProcessTableReader(table).readAgentProcesses();
    }

    fs::path root;
};

const AgentSession webapp{.pid = 501,
                          .name = "Claude Code",
                          .project = "webapp",
                          .runtime = "1h 5m",
                          .isBusy = true,
                          .processCount = 1};

TEST_F(PsProcessTableTest, asksForTheColumnsAndForTheFoldersOfAgentsOnly) {
    write("listing", "    1 2-00:00:00  0.0 /sbin/init\n"
                     "  501    01:05:03 12.5 /opt/homebrew/bin/claude --resume\n"
                     "  502       00:01  1,5 codex\n"
                     "  503       00:01  0.0 /bin/zsh -l\n");
    EXPECT_EQ(read(), std::vector<AgentSession>{webapp});
    EXPECT_EQ(calls("ps"), "2:-axo pid=,etime=,%cpu=,command=\n");
    EXPECT_EQ(calls("lsof"), "6:-a -p 501 -d cwd -Fn\n");
}

TEST_F(PsProcessTableTest, readsAllThatAToolWritesWhateverItsErrorsAndItsStatus) {
    // More of both than fits into a pipe.
    const std::string noise = "head -c 300000 /dev/zero | tr '\\0' x >&2";
    std::string listing;
    for (int line = 0; line < 5000; ++line) {
        listing += " 7 00:01 0.0 /bin/zsh with some arguments -l\n";
    }
    write("listing", listing + "  501    01:05:03 12.5 claude\n");
    tool("ps", noise + "\ncat '" + path("listing") + "'\nexit 3");
    tool("lsof", noise + "\necho n/Users/me/src/webapp\nexit 3");
    EXPECT_EQ(read(), std::vector<AgentSession>{webapp});
}

TEST_F(PsProcessTableTest, callsItALocalSessionWhereTheFolderCannotBeHad) {
    write("listing", "  501    01:05:03 12.5 claude\n");
    AgentSession local = webapp;
    local.project = "Local session";
    for (const std::string commands :
         {"printf 'p501\\nfcwd\\n'", ":", "printf 'n/a\\377\\n'", "echo n"}) {
        tool("lsof", commands);
        EXPECT_EQ(read(), std::vector<AgentSession>{local}) << commands;
    }
    fs::remove(path("lsof"));
    EXPECT_EQ(read(), std::vector<AgentSession>{local});
}

TEST_F(PsProcessTableTest, findsNothingInAListingThatIsNoText) {
    write("listing", "  501    01:05:03 12.5 claude \xFF\n");
    EXPECT_TRUE(read().empty());
    fs::remove(path("ps"));
    EXPECT_TRUE(read().empty());
}

} // namespace
} // namespace vigilo
