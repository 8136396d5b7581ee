#include "app/CommandLine.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace vigilo {
namespace {

using Arguments = std::vector<std::string_view>;

TEST(CommandLine, knowsItsSwitchesInAnyPositionAndIgnoresTheRest) {
    const std::vector<std::pair<Arguments, Invocation>> cases{
        {{}, Invocation::application},
        {{"vigilo"}, Invocation::application},
        {{"vigilo", "--self-test"}, Invocation::selfTest},
        {{"vigilo", "a", "-b", "--self-test"}, Invocation::selfTest},
        {{"--self-test"}, Invocation::selfTest},
        {{"vigilo", "--help", "--self-test"}, Invocation::selfTest},
        {{"vigilo", "--help"}, Invocation::help},
        {{"vigilo", "--version", "x"}, Invocation::version},
        {{"vigilo", "--version", "--help"}, Invocation::help},
        {{"vigilo", "--platform", "nonsense"}, Invocation::application},
    };
    for (const auto& [arguments, expected] : cases) {
        EXPECT_EQ(invocation(arguments), expected) << testing::PrintToString(arguments);
    }
}

TEST(CommandLine, ignoresNearMisses) {
    for (const std::string_view argument :
         {"--Self-Test", "--self-tests", "-self-test", "--self-test=1", " --self-test",
          "--self_test", "--HELP", "-h", "-v", "--versions"}) {
        EXPECT_EQ(invocation(Arguments{"vigilo", argument}), Invocation::application) << argument;
    }
}

TEST(CommandLine, helpNamesEverySwitch) {
    for (const std::string_view argument : {"--self-test", "--help", "--version"}) {
        EXPECT_NE(helpText().find(argument), std::string_view::npos) << argument;
    }
}

} // namespace
} // namespace vigilo
