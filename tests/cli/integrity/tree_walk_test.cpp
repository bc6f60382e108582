// The tree that a payload was unpacked to.
#include "cli/integrity/tree_walk.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "pkgvet/base/remove_tree.h"
#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using namespace pkgvet::cli;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

// Below a directory of its own, which anybody may enter.
class TreeWalkTest : public testing::Test {
protected:
    void SetUp() override {
        fs::permissions(directory_.path(), fs::perms::all);
        // The superuser may read all, so that this user tries it as another one.
        if (geteuid() == 0) {
            EXPECT_EQ(chown(directory_.path().c_str(), kNobody, kNobody), 0);
        }
    }

    // As a user that is not the superuser.
    bool holds(const std::function<bool()>& fact) {
        return holdsInChild([&] {
            return (geteuid() != 0 || (setgid(kNobody) == 0 && setuid(kNobody) == 0)) && fact();
        });
    }

    TemporaryDirectory directory_;
};

TEST_F(TreeWalkTest, VisitsAllThatIsThereAndFollowsNoLinks) {
    fs::create_directories(directory_ / "a/b/c");
    directory_.write("a/f", "x");
    fs::create_directory_symlink("/usr", directory_ / "a/b/usr");
    std::vector<std::string> paths;
    walkTree(directory_.path(), [&paths](const TreeEntry& entry) {
        EXPECT_TRUE(entry.isReadable);
        EXPECT_EQ(S_ISLNK(entry.status.st_mode), entry.path == "/a/b/usr");
        paths.push_back(entry.path);
    });
    EXPECT_THAT(paths, UnorderedElementsAre("/a", "/a/b", "/a/b/c", "/a/b/usr", "/a/f"));
}

TEST_F(TreeWalkTest, WhatItsOwnerMayNotReadCanBeReadWhileItIsVisited) {
    EXPECT_TRUE(holds([this] {
        fs::create_directories(directory_ / "d/e");
        writeFile(directory_ / "d/e/f", "text");
        writeFile(directory_ / "g", "text");
        fs::permissions(directory_ / "d/e/f", fs::perms::none);
        fs::permissions(directory_ / "d/e", fs::perms::owner_write);
        fs::permissions(directory_ / "d", fs::perms::none);
        int unreadable = 0;
        walkTree(directory_.path(), [this, &unreadable](const TreeEntry& entry) {
            unreadable += entry.isReadable ? 0 : 1;
            if (S_ISREG(entry.status.st_mode)) {
                EXPECT_EQ(readFile(directory_.path().string() + entry.path), "text");
            }
        });
        const fs::perms outer = fs::status(directory_ / "d").permissions();
        fs::permissions(directory_ / "d", fs::perms::owner_all);
        const fs::perms inner = fs::status(directory_ / "d/e").permissions();
        fs::permissions(directory_ / "d/e", fs::perms::owner_all);
        return unreadable == 3 && outer == fs::perms::none && inner == fs::perms::owner_write &&
               fs::status(directory_ / "d/e/f").permissions() == fs::perms::none;
    }));
}

TEST_F(TreeWalkTest, ATreeThatIsNotThereCannotBeWalked) {
    EXPECT_THROW(walkTree(directory_ / "missing", [](const TreeEntry&) {}), std::system_error);
}

}  // namespace
