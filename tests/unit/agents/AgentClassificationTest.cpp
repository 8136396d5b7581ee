#include "agents/AgentClassification.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace vigilo {
namespace {

TEST(AgentName, findsAgentsByTheFirstFourWords) {
    const std::vector<std::pair<std::string, std::string>> agents{
        {"/opt/homebrew/bin/codex --model test", "Codex"},
        {"/opt/homebrew/bin/claude --resume", "Claude Code"},
        {"/usr/local/bin/CLAUDE", "Claude Code"},
        {"claude", "Claude Code"},
        {"node claude.js", "Claude Code"},
        {"node /x/codex.mjs --flag", "Codex"},
        {"node claude codex", "Claude Code"},
        {"node codex claude", "Codex"},
        {"a b c codex", "Codex"},
        {"  \t codex", "Codex"},
        {"/src/codex/ x", "Codex"},
        {"sh -c /x/Claude.Sh", "Claude Code"},
        {"a\u3000codex", "Codex"},
        {"vim claude.md", "Claude Code"},
    };
    for (const auto& [command, name] : agents) {
        EXPECT_EQ(agentName(command), name) << command;
    }
}

TEST(AgentName, findsNoneElsewhere) {
    for (const std::string command :
         {"/bin/zsh -l", "", "   ", "claude.js", "codex.mjs --flag", "a b c d codex", "claude-cli",
          "codexd", "node claude-cli", "node codexd", "'claude'", "/claude/x", "/", "xclaude",
          "node claud", "claude\u200B"}) {
        EXPECT_EQ(agentName(command), std::nullopt) << command;
    }
}

TEST(AgentName, takesAnyBytes) {
    EXPECT_EQ(agentName("\xFF\xFE claude"), "Claude Code");
    EXPECT_EQ(agentName("claude\xFF"), std::nullopt);
    EXPECT_EQ(agentName(std::string("codex\0x", 7)), std::nullopt);
    EXPECT_EQ(agentName(std::string(1 << 20, 'a') + " codex"), "Codex");
}

TEST(FriendlyRuntime, shortensAnElapsedTime) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"07-09:03:22", "7d 9h"},
        {"01:05:03", "1h 5m"},
        {"00:42", "42s"},
        {"05:03", "5m"},
        {"00:00:59", "59s"},
        {"00:10:00", "10m"},
        {"2-00:00:00", "2d 0h"},
        {"2-05:00", "2d 0h"},
        {"3-05:10", "3d 0h"},
        {"", "0s"},
        {"abc", "0s"},
        {"1:2:3:4", "1s"},
        {"x-00:30", "30s"},
        {"-5", "5s"},
        {"--5:00", "5m"},
        {"-", "0s"},
        {"2-", "2s"},
        {"1-2-3:00:00", "1d 0h"},
        {"::5::", "5s"},
        {"1:x:2", "1m"},
        {"-1:00", "1m"},
        {"0:-5", "5s"},
        {"0--5", "-5s"},
        {"99999999999999999999:00", "0s"},
        {"-1-00:30", "1d 0h"},
        {" 1:00", "0s"},
    };
    for (const auto& [elapsed, text] : cases) {
        EXPECT_EQ(friendlyRuntime(elapsed), text) << elapsed;
    }
}

} // namespace
} // namespace vigilo
