#include "platform/linux/login/XdgLoginItem.h"

#include "platform/linux/login/AutostartEntry.h"
#include "tests/unit/platform/login/ScratchFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace vigilo::platform {
namespace {

namespace fs = std::filesystem;

class XdgLoginItemTest : public testing::Test {
protected:
    XdgLoginItemTest() {
        writeFile(program, "#!/bin/sh\n");
        fs::permissions(program, fs::perms(0755));
    }

    /// One made anew, since nothing may be kept between questions.
    XdgLoginItem item() const {
        return XdgLoginItem({.configHome = scratch.path() / "home",
                             .configFolders = {scratch.path() / "near", scratch.path() / "far"},
                             .currentDesktop = "GNOME",
                             .searchPath = "bin:" + (scratch.path() / "bin").string(),
                             .program = program.string()});
    }

    fs::path entryIn(const char* folder) const {
        return scratch.path() / folder / "autostart" / "io.github.vigilo.Vigilo.desktop";
    }

    ScratchFolder scratch;
    fs::path program = scratch.path() / "bin" / "vigilo";
    fs::path entry = entryIn("home");
};

TEST_F(XdgLoginItemTest, isNotRegisteredWithoutAnyFileAndMakesNone) {
    EXPECT_EQ(item().status(), LoginItemStatus::notRegistered);
    EXPECT_FALSE(fs::exists(scratch.path() / "home"));
}

TEST_F(XdgLoginItemTest, isEnabledOnceRegisteredAndGoneOnceUnregistered) {
    EXPECT_EQ(item().registerItem(), std::nullopt);
    EXPECT_EQ(item().status(), LoginItemStatus::enabled);
    EXPECT_EQ(contentOf(entry), autostartFile(program.string()));
    EXPECT_EQ(item().unregisterItem(), std::nullopt);
    EXPECT_EQ(item().status(), LoginItemStatus::notRegistered);
    EXPECT_FALSE(fs::exists(entry));
}

TEST_F(XdgLoginItemTest, isUnregisteredAlsoWhenTheFileHasGoneAlready) {
    EXPECT_EQ(item().unregisterItem(), std::nullopt);
}

TEST_F(XdgLoginItemTest, isTheUsersChoiceOnceSwitchedOffInTheDesktopsSettings) {
    EXPECT_EQ(item().registerItem(), std::nullopt);
    writeFile(entry, contentOf(entry) + "Hidden=true\n");
    EXPECT_EQ(item().status(), LoginItemStatus::requiresApproval);
}

TEST_F(XdgLoginItemTest, isNotFoundOnceTheProgramIsGoneOrMayNotBeRun) {
    EXPECT_EQ(item().registerItem(), std::nullopt);
    fs::permissions(program, fs::perms(0644));
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
    fs::remove(program);
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
    fs::create_directory(program);
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
}

TEST_F(XdgLoginItemTest, isEnabledByAnEntryThatNamesAProgramOnTheSearchPath) {
    writeFile(entry, "[Desktop Entry]\nType=Application\nExec=vigilo\n");
    EXPECT_EQ(item().status(), LoginItemStatus::enabled);
    writeFile(entry, "[Desktop Entry]\nType=Application\nExec=bin/vigilo\n");
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
}

TEST_F(XdgLoginItemTest, isNotFoundWhenTheFileIsNoValidEntry) {
    writeFile(entry, "nonsense");
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
    writeFile(entry, std::string(100'000, '\n') + autostartFile(program.string()));
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
    fs::remove(entry);
    fs::create_symlink("nowhere", entry);
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
    fs::remove(entry);
    ASSERT_EQ(mkfifo(entry.c_str(), 0600), 0);
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
}

TEST_F(XdgLoginItemTest, mendsAnEntryThatWasNotFound) {
    writeFile(entry, autostartFile("/opt/gone/vigilo"));
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
    EXPECT_EQ(item().registerItem(), std::nullopt);
    EXPECT_EQ(item().status(), LoginItemStatus::enabled);
}

TEST_F(XdgLoginItemTest, removesALinkButNotWhatItPointsTo) {
    const fs::path kept = scratch.path() / "kept.desktop";
    writeFile(kept, autostartFile(program.string()));
    fs::create_directories(entry.parent_path());
    fs::create_symlink(kept, entry);
    EXPECT_EQ(item().status(), LoginItemStatus::enabled);
    EXPECT_EQ(item().unregisterItem(), std::nullopt);
    EXPECT_FALSE(fs::is_symlink(entry));
    EXPECT_EQ(contentOf(kept), autostartFile(program.string()));
}

TEST_F(XdgLoginItemTest, looksInTheUsersFolderThenInTheSystemsInTheirOrder) {
    writeFile(entryIn("far"), autostartFile(program.string()));
    EXPECT_EQ(item().status(), LoginItemStatus::enabled);
    writeFile(entryIn("near"), "nonsense");
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
    writeFile(entry, "[Desktop Entry]\nHidden=true\n");
    EXPECT_EQ(item().status(), LoginItemStatus::requiresApproval);
}

TEST_F(XdgLoginItemTest, switchesAnEntryOfTheSystemOffAndOnWithOneOfItsOwn) {
    const std::string systems = autostartFile(program.string());
    writeFile(entryIn("far"), systems);
    EXPECT_EQ(item().unregisterItem(), std::nullopt);
    EXPECT_EQ(item().status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(contentOf(entryIn("far")), systems);
    EXPECT_EQ(item().registerItem(), std::nullopt);
    EXPECT_EQ(item().status(), LoginItemStatus::enabled);
}

TEST_F(XdgLoginItemTest, saysWhatIsInTheWay) {
    fs::create_directories(entry);
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
    EXPECT_EQ(item().registerItem(), entry.string() + ": Is a directory");
    EXPECT_EQ(item().unregisterItem(), entry.string() + ": Is a directory");
    EXPECT_TRUE(fs::is_directory(entry));
}

TEST_F(XdgLoginItemTest, refusesAPathThatSomeDesktopCannotStart) {
    const auto refusal = [this](const char* odd) {
        return XdgLoginItem({.configHome = scratch.path() / "home", .program = odd}).registerItem();
    };
    EXPECT_EQ(refusal("/opt/\xff/vigilo"),
              "/opt/\xff/vigilo: Invalid or incomplete multibyte or wide character");
    EXPECT_EQ(refusal("/opt/100%/vigilo"), "/opt/100%/vigilo: Invalid argument");
    EXPECT_EQ(refusal("/opt/a\\b/vigilo"), "/opt/a\\b/vigilo: Invalid argument");
    EXPECT_EQ(refusal("/opt/a\nb/vigilo"), "/opt/a\nb/vigilo: Invalid argument");
    EXPECT_FALSE(fs::exists(entry));
}

TEST_F(XdgLoginItemTest, refusesWhereTheUserHasNoHome) {
    XdgLoginItem homeless({.program = program.string()});
    EXPECT_EQ(homeless.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(homeless.registerItem(), "~/.config: No such file or directory");
    EXPECT_EQ(homeless.unregisterItem(), std::nullopt);
}

} // namespace
} // namespace vigilo::platform
