// What a killed run leaves behind, and what only looks like it.
#include "cli/worker/claim.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <thread>

#include "tests/support/base/temporary_directory.h"

namespace {

using namespace pkgvet::cli;

namespace fs = std::filesystem;

class ClaimTest : public testing::Test {
protected:
    // A directory with a file, as a run makes it.
    std::string make(const std::string& name) const {
        parent_.write(name + "/unpacked/file", "content");
        const std::string path = parent_ / name;
        chmod(path.c_str(), S_IRWXU);
        return path;
    }

    void claimAndDie(const std::string& path, const std::string& companion = "") const {
        const Claim claim(path, companion);
    }

    const TemporaryDirectory parent_;
};

TEST_F(ClaimTest, AbandonedDirectoryIsRemoved) {
    const std::string path = make("pkgvet.abcdef");
    claimAndDie(path);
    clearAbandoned(parent_.path());
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(ClaimTest, SaysWhetherTheDirectoryIsMarked) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(Claim(directory.path(), "").isMarked());
    EXPECT_FALSE(Claim(directory.path(), "").isMarked()) << "a mark is made once";
    EXPECT_FALSE(Claim(directory / "none", "").isMarked());
}

TEST_F(ClaimTest, DirectoryIsMadeWithTheMark) {
    const ClaimedDirectory made = makeClaimed(parent_ / "pkgvet.XXXXXX", "");
    EXPECT_TRUE(isMadeBy(parent_ / "pkgvet.XXXXXX", made.path)) << made.path;
    EXPECT_TRUE(made.claim.isMarked());
    clearAbandoned(parent_.path());
    EXPECT_TRUE(fs::exists(made.path));
    discard(made);
    EXPECT_TRUE(fs::is_empty(parent_.path()));
}

TEST_F(ClaimTest, IsRemovedWithWhateverThePackageMadeOfTheMark) {
    const std::string tree = make("tree");
    const std::string path = make("pkgvet.abcdef");
    claimAndDie(path, tree);
    fs::remove(path + "/.pkgvet");
    fs::create_directories(path + "/.pkgvet/file");
    removeClaimed(path, tree);
    EXPECT_TRUE(fs::is_empty(parent_.path()));
    removeClaimed("", "");
    removeClaimed(path, "");
}

// The next run is to know it.
TEST_F(ClaimTest, KeepsItsMarkAsLongAsItCannotBeRemoved) {
    const std::string path = make("pkgvet.abcdef");
    claimAndDie(path, "");
    removeClaimed(path, "/proc/self/task");
    EXPECT_TRUE(fs::exists(path + "/.pkgvet"));
}

// Directories that others chose the names of hold an "X" now and then.
TEST_F(ClaimTest, OnlyTheEndOfATemplateIsAPlaceholder) {
    EXPECT_TRUE(isMadeBy("/tmp/aX.b/pkgvet.XXXXXX", "/tmp/aX.b/pkgvet.aX1bX2"));
    EXPECT_FALSE(isMadeBy("/tmp/aX.b/pkgvet.XXXXXX", "/tmp/aY.b/pkgvet.aX1bX2"));
}

TEST_F(ClaimTest, WhereNoneCanBeMadeTheReasonIsTold) {
    const ClaimedDirectory none = makeClaimed(parent_ / "nowhere/pkgvet.XXXXXX", "");
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(none.path, "");
    discard(none);
    EXPECT_EQ(errno, ENOENT);
}

// As it is between the two steps of making it.
TEST_F(ClaimTest, EmptyDirectoryWithoutItsMarkIsRemoved) {
    const std::string path = parent_ / "pkgvet.abcdef";
    ASSERT_EQ(mkdir(path.c_str(), S_IRWXU | S_ISVTX), 0);
    const std::string begun = parent_ / "pkgvet.begun1";
    ASSERT_EQ(mkdir(begun.c_str(), S_IRWXU | S_ISVTX), 0);
    writeFile(begun + "/.pkgvet", "");
    const std::string filled = make("pkgvet.filled");
    ASSERT_EQ(chmod(filled.c_str(), S_IRWXU | S_ISVTX), 0);
    const std::string plain = parent_ / "pkgvet.plain1";
    ASSERT_EQ(mkdir(plain.c_str(), S_IRWXU), 0);
    {
        const Claim held = Claim::shared(path);
        clearAbandoned(parent_.path());
        EXPECT_TRUE(fs::exists(path));
    }
    clearAbandoned(parent_.path());
    EXPECT_FALSE(fs::exists(path));
    EXPECT_FALSE(fs::exists(begun));
    EXPECT_TRUE(fs::exists(filled));
    EXPECT_TRUE(fs::exists(plain));
}

// One makes directories while another clears away what it takes for abandoned.
TEST_F(ClaimTest, WhoeverLosesADirectoryToAnotherRunMakesAnother) {
    std::atomic<bool> isOver = false;
    std::thread other([&] {
        while (!isOver) {
            clearAbandoned(parent_.path());
        }
    });
    for (int i = 0; i < 2000; ++i) {
        const ClaimedDirectory made = makeClaimed(parent_ / "pkgvet.XXXXXX", "");
        ASSERT_TRUE(made.claim.isMarked()) << i << ": " << std::strerror(errno);
        ASSERT_TRUE(fs::exists(made.path)) << i;
        discard(made);
    }
    isOver = true;
    other.join();
    EXPECT_TRUE(fs::is_empty(parent_.path()));
}

TEST_F(ClaimTest, OneThatIsHeldStays) {
    const std::string path = make("pkgvet.abcdef");
    {
        Claim other;
        {
            const Claim claim(path, "");
            other = Claim::shared(path);
            clearAbandoned(parent_.path());
            EXPECT_TRUE(fs::exists(path));
        }
        clearAbandoned(parent_.path());
        EXPECT_TRUE(fs::exists(path));
    }
    clearAbandoned(parent_.path());
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(ClaimTest, WhatIsNotCertainlyARunsStays) {
    const std::string unmarked = make("pkgvet.unmark");
    const std::string otherName = make("pkgvet.toolong");
    claimAndDie(otherName);
    const std::string writable = make("pkgvet.writab");
    claimAndDie(writable);
    ASSERT_EQ(chmod(writable.c_str(), 0777), 0);
    const std::string forged = make("pkgvet.forged");
    parent_.write("pkgvet.forged/.pkgvet", "something else\n");
    const std::string writableMark = make("pkgvet.wrmark");
    claimAndDie(writableMark);
    ASSERT_EQ(chmod((writableMark + "/.pkgvet").c_str(), 0666), 0);
    const std::string target = make("target");
    claimAndDie(target);
    fs::create_symlink(target, parent_ / "pkgvet.linked");
    const std::string linkedMark = make("pkgvet.lnkmrk");
    fs::create_symlink(target + "/.pkgvet", linkedMark + "/.pkgvet");
    clearAbandoned(parent_.path());
    for (const std::string& path :
         {unmarked, otherName, writable, forged, writableMark, target, linkedMark}) {
        EXPECT_TRUE(fs::exists(path + "/unpacked/file")) << path;
    }
}

TEST_F(ClaimTest, WhatBelongsToOthersStays) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can give files away";
    }
    const std::string path = make("pkgvet.others");
    claimAndDie(path);
    ASSERT_EQ(chown(path.c_str(), 12345, 12345), 0);
    clearAbandoned(parent_.path());
    EXPECT_TRUE(fs::exists(path));
}

TEST_F(ClaimTest, CompanionGoesWithItIfItCanBeOne) {
    char tree[] = "/tmp/dir.XXXXXX";
    ASSERT_NE(mkdtemp(tree), nullptr);
    const std::string companion = tree;
    const std::string path = make("pkgvet.abcdef");
    claimAndDie(path, companion);
    const std::string stranger = make("stranger");
    const std::string other = make("pkgvet.ghijkl");
    claimAndDie(other, stranger);
    clearAbandoned(parent_.path());
    EXPECT_FALSE(fs::exists(companion));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_TRUE(fs::exists(stranger));
    fs::remove_all(companion);
}

TEST_F(ClaimTest, NothingIsRemovedWhereOthersMayMoveThings) {
    const std::string path = make("pkgvet.abcdef");
    claimAndDie(path);
    ASSERT_EQ(chmod(parent_.path().c_str(), 0777), 0);
    clearAbandoned(parent_.path());
    EXPECT_TRUE(fs::exists(path));
    ASSERT_EQ(chmod(parent_.path().c_str(), 0777 | S_ISVTX), 0);
    clearAbandoned(parent_.path());
    EXPECT_FALSE(fs::exists(path));
    clearAbandoned(parent_ / "nowhere");
}

}  // namespace
