// What becomes of regular entries, held against what cpio makes of them.
#include "cli/guard/tree_writer.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>

#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/guarded_archive.h"
#include "tests/support/package/package_builder.h"

namespace pkgvet::cli {

namespace {

namespace fs = std::filesystem;

using testing::EndsWith;

// Everything that entries say of a tree, in the order of its paths. The times of directories are
// those of their last change, and their sizes the file system's own affair.
std::string listing(const fs::path& root) {
    std::string lines;
    EXPECT_EQ(runProgram({"sh", "-c",
                          "cd '" + root.string() +
                              "' && find . -mindepth 1 "
                              "\\( -type d -printf '%p %y %m %U:%G\\n' -o "
                              "-type l -printf '%p %y %U:%G %l\\n' -o "
                              "-printf '%p %y %m %U:%G %n %s %T@\\n' \\) | sort"},
                         &lines),
              0);
    return lines;
}

class TreeWriterTest : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directory(tree_);
        fs::current_path(tree_);
    }
    void TearDown() override { fs::current_path(before_); }

    // What could not be written of the entries of an archive.
    std::string unpack(const std::string& archive) {
        TreeWriter writer;
        ArchiveGuard guard(kOrders,
                           {.begin = [&](const RegularEntry& entry) { writer.begin(entry); },
                            .data = [&](std::string_view data) { writer.write(data); }});
        guard.take(archive + cpioTrailer());
        writer.finish();
        EXPECT_EQ(guard.finish().end, GuardEnd::Whole);
        return writer.failure();
    }

    fs::path unpackByCpio(const std::string& archive) {
        const std::string file = directory_.write("archive", archive + cpioTrailer());
        const fs::path root = directory_ / "by-cpio";
        fs::create_directory(root);
        std::string output;
        EXPECT_EQ(runProgram(
                      {"env", "-C", root.string(), "sh", "-c", "cpio -idm --quiet <'" + file + "'"},
                      &output),
                  0)
            << output;
        return root;
    }

    static mode_t modeOf(const fs::path& path) {
        struct stat status {};
        EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
        return status.st_mode & 07777;
    }

    TemporaryDirectory directory_;
    fs::path tree_ = directory_ / "tree";

private:
    fs::path before_ = fs::current_path();
};

struct Case {
    const char* name;
    std::string archive;  // without its trailer
};

std::vector<Case> cases() {
    return {
        {"nothing", ""},
        {"files of all sizes",
         file("./a", "") + file("b", "1") + file("./c", std::string(70000, 'x'))},
        {"modes and times",
         cpioEntry({.name = "./a", .data = "x", .mode = 0100600, .time = 1}) +
             cpioEntry({.name = "./b", .data = "x", .mode = 0101777, .time = 0x7fffffff}) +
             cpioEntry({.name = "./c", .data = "", .mode = 0100000, .time = 0xffffffff}) +
             cpioEntry({.name = "./permitted", .data = "x", .mode = 0104755, .time = 1700000000})},
        {"directories that have no entry, or a late one",
         file("./a/b/c/d") + special("./a/b", 040700) + file("./e/f") + directory("./g/h/i") +
             symbolicLink("./k/l", "x") + hardLink("./m/n", "x", 3)},
        {"directories of all kinds",
         special("./a", 041777) + special("./b", 040711) + file("./b/c") + special("./d", 040777)},
        {"the root", special(".", 040700) + file("./a")},
        {"links", symbolicLink("./a", "/etc/passwd") + symbolicLink("./b", "a b\n") +
                      symbolicLink("./c/d", "..")},
        {"hard links",
         hardLink("./a", "", 3) + file("./b") + hardLink("./c/d", "", 3) + hardLink("./e", "x", 3)},
        {"hard links of which the last differs from the first",
         cpioEntry({.name = "a", .mode = 0100600, .inode = 5, .links = 2, .time = 7}) +
             cpioEntry(
                 {.name = "b", .data = "x", .mode = 0100755, .inode = 5, .links = 2, .time = 9})},
        {"hard links without any data",
         cpioEntry({.name = "a/b", .mode = 0100600, .inode = 5, .links = 3, .time = 7}) +
             cpioEntry({.name = "c", .mode = 0100640, .inode = 5, .links = 3, .time = 8}) +
             cpioEntry({.name = "d/e", .mode = 0100755, .inode = 5, .links = 3, .time = 9})},
        {"two groups of hard links", hardLink("./a", "", 2, 7) + hardLink("./b", "", 2, 8) +
                                         hardLink("./c", "cc", 2, 7) + hardLink("./d", "d", 2, 8)},
        {"one name of a file with more", hardLink("./a", "x", 5) + hardLink("./b", "", 5, 8)},
        {"odd names",
         file("./a b\nc\t\"\\$`*") + file("./\xff\xfe") + file("./-rf") + file("./..a")},
        {"owners",
         cpioEntry({.name = "permitted", .mode = 0104755, .user = 7, .group = 8}) +
             cpioEntry({.name = "d", .mode = 040755, .user = 7, .group = 8}) +
             cpioEntry({.name = "l", .data = "x", .mode = 0120777, .user = 7, .group = 8})},
    };
}

}  // namespace

TEST_F(TreeWriterTest, MakesWhatCpioMakes) {
    for (const Case& row : cases()) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(unpack(row.archive), "");
        const fs::path byCpio = unpackByCpio(row.archive);
        EXPECT_EQ(listing(tree_), listing(byCpio));
        EXPECT_EQ(runProgram({"diff", "-r", "--no-dereference", tree_, byCpio}), 0);
        for (const fs::path& root : {tree_, byCpio}) {
            fs::remove_all(root);
        }
        fs::create_directory(tree_);
        fs::current_path(tree_);
    }
}

// cpio itself gets no further there unless it runs as the superuser.
TEST_F(TreeWriterTest, GetsIntoDirectoriesThatForbidItToTheirOwner) {
    fs::permissions(directory_.path(), fs::perms::all);
    fs::permissions(tree_, fs::perms::all);
    const std::string archive = special("./a", 040000) + special("./a/b", 040500) +
                                file("./a/b/c") + special("d/e", 040300) + file("d/e/f") +
                                special("./d", 040100);
    EXPECT_TRUE(holdsForOrdinaryUser([&] {
        fs::current_path(tree_);
        return unpack(archive).empty() && modeOf(tree_ / "a") == 0 && modeOf(tree_ / "d") == 0100 &&
               modeOf(tree_ / "d/e") == 0300;
    }));
    EXPECT_TRUE(holdsForOrdinaryUser([this] {
        fs::permissions(tree_ / "a", fs::perms::owner_all);
        const bool isWhole = modeOf(tree_ / "a/b") == 0500 &&
                             readFile(tree_ / "a/b/c") == "content" &&
                             readFile(tree_ / "d/e/f") == "content";
        for (const char* const path : {"a/b", "d", "d/e"}) {
            fs::permissions(tree_ / path, fs::perms::owner_all);
        }
        return isWhole;
    }));
}

TEST_F(TreeWriterTest, DirectoriesOnTheWayAreLikeAnyNewOne) {
    const mode_t before = umask(027);
    EXPECT_EQ(unpack(file("./a/b/c")), "");
    umask(before);
    EXPECT_EQ(modeOf(tree_ / "a"), 0750U);
    EXPECT_EQ(modeOf(tree_ / "a/b"), 0750U);
    EXPECT_EQ(modeOf(tree_ / "a/b/c"), 0644U);
}

TEST_F(TreeWriterTest, FirstFailureIsToldAndEndsTheWriting) {
    writeFile(tree_ / "b", "mine");
    EXPECT_EQ(unpack(file("./a") + file("./b") + directory("./c") + file("./d")),
              "./b: File exists");
    EXPECT_EQ(readFile(tree_ / "a"), "content");
    EXPECT_EQ(readFile(tree_ / "b"), "mine");
    EXPECT_FALSE(fs::exists(tree_ / "c"));
    EXPECT_FALSE(fs::exists(tree_ / "d"));
}

// The guard lets no archive have one, but a file system may take two names for one.
TEST_F(TreeWriterTest, LinkThatIsThereAlreadyIsNotFollowed) {
    const fs::path outside = directory_ / "outside";
    fs::create_symlink(outside, tree_ / "a");
    fs::create_directory(directory_ / "other");
    fs::create_directory_symlink(directory_ / "other", tree_ / "b");
    EXPECT_EQ(unpack(file("a")), "a: File exists");
    EXPECT_FALSE(fs::exists(outside));
    const mode_t mode = modeOf(directory_ / "other");
    EXPECT_EQ(unpack(special("b", 041777)), "b: Not a directory");
    for (const std::string& entry :
         {file("./b/x"), directory("b/x"), symbolicLink("b/x", "y"), file("b/x/y")}) {
        EXPECT_THAT(unpack(entry), EndsWith(": Not a directory"));
    }
    EXPECT_THAT(unpack(hardLink("c", "") + hardLink("b/x", "y")), EndsWith(": Not a directory"));
    EXPECT_THAT(unpack(hardLink("b/x", "") + hardLink("d", "y")), EndsWith(": Not a directory"));
    EXPECT_TRUE(fs::is_empty(directory_ / "other"));
    EXPECT_EQ(modeOf(directory_ / "other"), mode);
}

TEST_F(TreeWriterTest, NameThatNoFileSystemTakesIsAFailure) {
    const std::string name(256, 'x');
    const std::string failure = name + ": File name too long";
    EXPECT_EQ(unpack(file(name)), failure);
    EXPECT_EQ(unpack(directory(name)), failure);
    EXPECT_EQ(unpack(symbolicLink(name, "x")), failure);
    EXPECT_EQ(unpack(hardLink(name, "") + hardLink("./b", "x")), failure);
}

// As for cpio, the prefix is a part of the path.
TEST_F(TreeWriterTest, PathsAreAsLongAsTheyStandThere) {
    EXPECT_EQ(unpack(file(longName(4095))), "");
    EXPECT_EQ(unpack(file("./" + longName(4094))), "./" + longName(4094) + ": File name too long");
}

TEST_F(TreeWriterTest, DataAreMovedFromAPipeAndFromNothingElse) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    const Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    ASSERT_EQ(write(writing.get(), "123456789", 9), 9);
    writing.reset();
    const EntryFields fields{.mode = 0100640, .links = 1, .time = 5, .dataSize = 8};
    TreeWriter writer;
    writer.begin({fields, "a", "a", {}});
    const Descriptor noPipe(open("/dev/null", O_RDONLY | O_CLOEXEC));
    EXPECT_EQ(writer.moveFrom(noPipe.get(), 8), std::nullopt);
    EXPECT_EQ(writer.moveFrom(reading.get(), 3), 3U);
    writer.write("xy");
    EXPECT_EQ(writer.moveFrom(reading.get(), 3), 3U);
    EXPECT_EQ(readFile(tree_ / "a"), "123xy456");
    EXPECT_EQ(modeOf(tree_ / "a"), 0640U);
    EXPECT_EQ(writer.failure(), "");
}

// As where the file system is full.
TEST_F(TreeWriterTest, NothingIsMovedBehindAFailure) {
    const EntryFields fields{.mode = 0100640, .links = 1, .dataSize = 8};
    TreeWriter writer;
    writer.begin({fields, "a", "a", {}});
    struct rlimit before {};
    getrlimit(RLIMIT_FSIZE, &before);
    const struct rlimit few { 2, before.rlim_max };
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &few);
    writer.write("1234");
    setrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, handler);
    EXPECT_EQ(writer.failure(), "a: File too large");
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    const Descriptor reading(ends[0]);
    const Descriptor writing(ends[1]);
    ASSERT_EQ(write(writing.get(), "12345678", 8), 8);
    EXPECT_EQ(writer.moveFrom(reading.get(), 8), std::nullopt);
    writer.write("5678");
    writer.finish();
    EXPECT_EQ(writer.failure(), "a: File too large");
    EXPECT_EQ(readFile(tree_ / "a"), "12");
}

}  // namespace pkgvet::cli
