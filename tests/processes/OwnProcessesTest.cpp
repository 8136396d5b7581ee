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

TEST_P(OwnProcesses, areLeftOutOnAnotherDisplay) {
    unsetenv("WAYLAND_DISPLAY");
    setenv("DISPLAY", ":4711.0", 1);
    const RealProcess process = start();
    setenv("DISPLAY", ":4711", 1);
    EXPECT_TRUE(isOneOfOursRunning({name}));
    setenv("DISPLAY", ":4712", 1);
    EXPECT_FALSE(isOneOfOursRunning({name}));
    // One that does not say where it is may be here.
    setenv("WAYLAND_DISPLAY", "wayland-4711", 1);
    EXPECT_TRUE(isOneOfOursRunning({name}));
    unsetenv("WAYLAND_DISPLAY");
    unsetenv("DISPLAY");
    EXPECT_TRUE(isOneOfOursRunning({name}));
}

INSTANTIATE_TEST_SUITE_P(OfAnyLength, OwnProcesses,
                         testing::Values("-lock", "-a-locker-with-a-long-name"));

} // namespace
} // namespace vigilo
