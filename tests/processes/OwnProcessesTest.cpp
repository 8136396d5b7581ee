#include "helpers/lock/OwnProcesses.h"
#include "tests/processes/RealProcess.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

namespace vigilo {
namespace {

namespace fs = std::filesystem;

/// A program whose name nobody else's has, shortened by the kernel or not.
class OwnProcesses : public testing::TestWithParam<std::string> {
protected:
    OwnProcesses() {
        std::string folder = (fs::temp_directory_path() / "vigilo-own-XXXXXX").string();
        root_ = mkdtemp(folder.data());
        name = std::to_string(getpid()) + GetParam();
        fs::copy_file("/usr/bin/sleep", root_ / name);
    }
    ~OwnProcesses() override { fs::remove_all(root_); }

    RealProcess start() const { return {(root_ / name).string(), {name, "600"}, root_.string()}; }

    std::string name;

private:
    fs::path root_;
};

TEST_P(OwnProcesses, areFoundByNameWhileTheyRun) {
    EXPECT_FALSE(isOneOfOursRunning({"no such program", name}));
    {
        const RealProcess process = start();
        EXPECT_TRUE(isOneOfOursRunning({"no such program", name}));
        EXPECT_FALSE(isOneOfOursRunning({"no such program"}));
        EXPECT_FALSE(isOneOfOursRunning({}));
        process.becomeZombie();
        EXPECT_FALSE(isOneOfOursRunning({name}));
    }
    EXPECT_FALSE(isOneOfOursRunning({name}));
}

INSTANTIATE_TEST_SUITE_P(OfAnyLength, OwnProcesses,
                         testing::Values("-lock", "-a-locker-with-a-long-name"));

} // namespace
} // namespace vigilo
