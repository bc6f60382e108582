// Directories that may vanish at installation.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "pkgvet/base/file_modes.h"
#include "pkgvet/files/file_rules.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_run.h"

namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;

class EmptyDirectories : public testing::Test {
protected:
    RuleRun check(const std::vector<std::string>& paths) {
        return runRule([&](pkgvet::Findings* findings) {
            pkgvet::checkEmptyDirectories(paths, pkgvet::readModes(root_.path(), paths),
                                          root_.path(), findings);
        });
    }

    TemporaryDirectory root_;
};

std::string emptyLine(const std::string& path) {
    return warningLine("[" + path +
                       "] Empty directory (can be omitted during package installation)");
}

TEST_F(EmptyDirectories, EmptyOnesAreWarningsAndPass) {
    fs::create_directories(root_ / "share/a");
    fs::create_directories(root_ / "share/b");
    fs::create_directories(root_ / "share/unlisted");
    root_.write("share/c", "");
    const RuleRun run = check({"/share", "/share/b", "/share/a", "/share/c"});
    EXPECT_THAT(run.lines, ElementsAre(emptyLine("/share/b"), emptyLine("/share/a")));
    EXPECT_EQ(run.failures, 0U);
}

TEST_F(EmptyDirectories, DirectoryOfADirectoryIsNotEmpty) {
    root_.write("a/b/.c", "");
    EXPECT_THAT(check({"/a", "/a/b"}).lines, IsEmpty());
}

TEST_F(EmptyDirectories, DirectoryOfTheHeaderAloneIsPassedOver) {
    EXPECT_THAT(check({"/a"}).lines, IsEmpty());
}

TEST_F(EmptyDirectories, LinksAreFollowed) {
    fs::create_directory(root_ / "a");
    fs::create_symlink("a", root_ / "b");
    fs::create_symlink("missing", root_ / "c");
    EXPECT_THAT(check({"/a", "/b", "/c"}).lines, ElementsAre(emptyLine("/a"), emptyLine("/b")));
}

TEST_F(EmptyDirectories, LinkThatCannotBeFollowedIsAnException) {
    fs::create_symlink("loop", root_ / "loop");
    EXPECT_THROW(check({"/loop"}), fs::filesystem_error);
}

TEST_F(EmptyDirectories, DirectoryThatCannotBeReadIsAnException) {
    fs::permissions(root_.path(), fs::perms::all);
    fs::create_directory(root_ / "a");
    fs::permissions(root_ / "a", fs::perms::none);
    EXPECT_TRUE(holdsForOrdinaryUser([this] {
        try {
            check({"/a"});
        } catch (const fs::filesystem_error&) {
            return true;
        }
        return false;
    }));
}

}  // namespace
