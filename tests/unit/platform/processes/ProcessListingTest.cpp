#include "platform/linux/processes/ProcessListing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace vigilo::platform {
namespace {

using Listed = std::vector<ListedProcess>;

TEST(ProcessListing, hasFourColumns) {
    EXPECT_EQ(parseProcessListing("    501    01:05:03 12.5 /opt/homebrew/bin/claude --resume\n"
                                  "  1 2-00:00:00  0.0 init\n"),
              (Listed{{.pid = 501,
                       .elapsed = "01:05:03",
                       .cpuPercent = 12.5,
                       .command = "/opt/homebrew/bin/claude --resume"},
                      {.pid = 1, .elapsed = "2-00:00:00", .cpuPercent = 0, .command = "init"}}));
}

TEST(ProcessListing, keepsTheBlanksOfACommand) {
    const Listed listed = parseProcessListing("1 00:01 0.0   a  b \r");
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed[0].command, "  a  b \r");
}

TEST(ProcessListing, leavesOutWhatItCannotRead) {
    for (const std::string line :
         {"", "1", "1 00:01", "1 00:01 0.0", "1 00:01 0.0 ", "x 00:01 0.0 codex",
          "1 00:01 0,5 codex", "1 00:01 y codex", "1.5 00:01 0.0 codex"}) {
        EXPECT_EQ(parseProcessListing(line + "\n"), Listed{}) << line;
        EXPECT_EQ(parseProcessListing(line + "\n2 00:01 0.0 sh\n\n").size(), 1u) << line;
    }
}

TEST(ProcessListing, takesAProcessorValueThatIsNoNumberOfPerCent) {
    const Listed listed = parseProcessListing("1 00:01 nan codex");
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_TRUE(std::isnan(listed[0].cpuPercent));
}

TEST(ProcessListing, isNothingUnlessAllOfItIsText) {
    EXPECT_EQ(parseProcessListing("1 00:01 0.0 codex\n2 00:01 0.0 \xFF\n"), Listed{});
}

TEST(OpenFileName, isTheFirstNameField) {
    EXPECT_EQ(parseOpenFileName("p12\nfcwd\nn/home/me/src\nn/other\n"), "/home/me/src");
    EXPECT_EQ(parseOpenFileName("n\n"), "");
    EXPECT_EQ(parseOpenFileName("p12\nfcwd\n"), std::nullopt);
    EXPECT_EQ(parseOpenFileName(""), std::nullopt);
    EXPECT_EQ(parseOpenFileName("n/\xFF\n"), std::nullopt);
}

} // namespace
} // namespace vigilo::platform
