#include "platform/linux/login/FileReplacement.h"

#include "tests/unit/platform/login/ScratchFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>

#include <sys/stat.h>

namespace vigilo::platform {
namespace {

namespace fs = std::filesystem;

class FileReplacement : public testing::Test {
protected:
    /// The names of what is in the scratch folder itself.
    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : fs::directory_iterator(scratch.path())) {
            found.insert(entry.path().filename().string());
        }
        return found;
    }

    static unsigned modeOf(const fs::path& path) {
        return static_cast<unsigned>(fs::status(path).permissions());
    }

    ScratchFolder scratch;
    fs::path file = scratch.path() / "file";
};

TEST_F(FileReplacement, writesANewFileAndNothingBesideIt) {
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_EQ(contentOf(file), "new");
    EXPECT_EQ(names(), std::set<std::string>{"file"});
}

TEST_F(FileReplacement, givesANewFileTheModeOfTheUmask) {
    const mode_t before = umask(027);
    EXPECT_FALSE(replaceFile(file, "new"));
    umask(before);
    EXPECT_EQ(modeOf(file), 0640u);
}

TEST_F(FileReplacement, keepsTheModeOfAnExistingFile) {
    writeFile(file, "old and longer");
    fs::permissions(file, fs::perms(0604));
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_EQ(contentOf(file), "new");
    EXPECT_EQ(modeOf(file), 0604u);
}

TEST_F(FileReplacement, makesMissingFoldersForTheUserAlone) {
    const fs::path deep = scratch.path() / "a" / "b" / "file";
    EXPECT_FALSE(replaceFile(deep, "new"));
    EXPECT_EQ(contentOf(deep), "new");
    EXPECT_EQ(modeOf(scratch.path() / "a"), 0700u);
    EXPECT_EQ(modeOf(scratch.path() / "a" / "b"), 0700u);
}

TEST_F(FileReplacement, writesWhatASymbolicLinkPointsTo) {
    fs::create_directory(scratch.path() / "kept");
    const fs::path real = scratch.path() / "kept" / "real";
    writeFile(real, "old");
    fs::create_symlink("kept/real", scratch.path() / "second");
    fs::create_symlink("second", file);
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_FALSE(fs::is_symlink(real));
    EXPECT_EQ(contentOf(real), "new");
}

TEST_F(FileReplacement, makesWhatASymbolicLinkPointsToInVain) {
    fs::create_symlink("real", file);
    EXPECT_FALSE(replaceFile(file, "new"));
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(contentOf(scratch.path() / "real"), "new");
}

TEST_F(FileReplacement, saysWhatIsInTheWayAndLeavesIt) {
    fs::create_directory(file);
    EXPECT_EQ(replaceFile(file, "new"), std::errc::is_a_directory);
    const fs::path pipe = scratch.path() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(replaceFile(pipe, "new"), std::errc::file_exists);
    const fs::path loop = scratch.path() / "loop";
    fs::create_symlink("loop", loop);
    EXPECT_EQ(replaceFile(loop, "new"), std::errc::too_many_symbolic_link_levels);
    const fs::path masked = scratch.path() / "masked";
    fs::create_symlink("/dev/null", masked);
    EXPECT_EQ(replaceFile(masked, "new"), std::errc::file_exists);
    writeFile(scratch.path() / "plain", "");
    EXPECT_EQ(replaceFile(scratch.path() / "plain" / "file", "new"), std::errc::not_a_directory);
    EXPECT_EQ(names(), (std::set<std::string>{"file", "loop", "masked", "pipe", "plain"}));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(FileReplacement, isNeverSeenHalfDone) {
    const std::string first(4000, 'a');
    const std::string second(4000, 'b');
    ASSERT_FALSE(replaceFile(file, first));
    std::atomic<bool> isDone = false;
    std::thread writer([&] {
        constexpr int rounds = 100;
        for (int round = 0; round < rounds; ++round) {
            replaceFile(file, round % 2 == 0 ? second : first);
        }
        isDone = true;
    });
    while (!isDone) {
        const std::string seen = contentOf(file);
        EXPECT_TRUE(seen == first || seen == second) << seen.size();
    }
    writer.join();
}

} // namespace
} // namespace vigilo::platform
