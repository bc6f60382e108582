// Small files, written and read whole.
#include "cli/worker/small_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <system_error>

#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::cli::beginningOf;
using pkgvet::cli::writeNewFile;

namespace fs = std::filesystem;

TEST(SmallFile, IsReadAsFarAsIsAskedFor) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", "12345");
    EXPECT_EQ(beginningOf(path, 3), "123");
    EXPECT_EQ(beginningOf(path, 5), "12345");
    EXPECT_EQ(beginningOf(path, 100), "12345");
    EXPECT_EQ(beginningOf(path, 0), "");
}

// Whoever is to write the note may write something else in its place.
TEST(SmallFile, NothingElseIsReadOrWaitedFor) {
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0600), 0);
    fs::create_symlink(directory.write("file", "12345"), directory / "link");
    for (const std::string& path : {directory / "fifo", directory / "link", directory / "missing",
                                    directory.path().string(), std::string("/dev/zero")}) {
        EXPECT_EQ(beginningOf(path, 3), "") << path;
    }
}

// The kernel states one page for the files of /sys, which hold less, as one does that shrinks
// between the look at its size and the end of reading.
TEST(SmallFile, ThatHoldsLessThanItStatesEndsEarly) {
    const std::string path = "/sys/devices/system/cpu/possible";
    std::error_code error;
    if (fs::file_size(path, error) < 1000 || error) {
        GTEST_SKIP() << "this machine has no such file";
    }
    const std::string content = beginningOf(path, 1000);
    EXPECT_EQ(content, readFile(path));
    EXPECT_LT(content.size(), 1000U);
}

TEST(SmallFile, IsWrittenWhereThereIsNone) {
    const TemporaryDirectory directory;
    const std::string path = directory / "file";
    writeNewFile(path, "content", 0400);
    EXPECT_EQ(readFile(path), "content");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read);
    EXPECT_THROW(writeNewFile(path, "more", 0600), std::system_error);
    EXPECT_EQ(readFile(path), "content");
}

TEST(SmallFile, FullDiskIsToldOf) {
    const TemporaryDirectory directory;
    EXPECT_THROW(writeNewFile("/dev/full", "x", 0600), std::system_error);
    EXPECT_THROW(writeNewFile(directory / "nowhere/file", "x", 0600), std::system_error);
}

}  // namespace
