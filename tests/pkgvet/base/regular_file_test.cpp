// Reading what is a regular file, and nothing else.
#include "pkgvet/base/regular_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::isRegularFile;
using pkgvet::mayNeverEnd;
using pkgvet::openRegularStream;
using pkgvet::readRegularFile;
using pkgvet::RegularFileReader;

constexpr std::size_t kEnough = 1000;

TEST(RegularFile, ReadsAFileWhole) {
    const TemporaryDirectory directory;
    const std::string content("one\n\0two\xFF", 9);
    const std::string path = directory.write("file", content);
    EXPECT_TRUE(isRegularFile(path));
    EXPECT_EQ(readRegularFile(path, kEnough), content);
}

TEST(RegularFile, ReadsAnEmptyFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", "");
    EXPECT_TRUE(isRegularFile(path));
    EXPECT_EQ(readRegularFile(path, 0), "");
}

TEST(RegularFile, FollowsLinks) {
    const TemporaryDirectory directory;
    directory.write("file", "text");
    std::filesystem::create_symlink("file", directory / "link");
    EXPECT_TRUE(isRegularFile(directory / "link"));
    EXPECT_EQ(readRegularFile(directory / "link", kEnough), "text");
}

TEST(RegularFile, TheLimitIsTheLastSizeThatIsRead) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", "12345");
    EXPECT_EQ(readRegularFile(path, 5), "12345");
    EXPECT_EQ(readRegularFile(path, 4), std::nullopt);
}

TEST(RegularFile, NothingElseIsReadOrWaitedFor) {
    const TemporaryDirectory directory;
    std::filesystem::create_directory(directory / "directory");
    ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink("fifo", directory / "link to fifo");
    std::filesystem::create_symlink("missing", directory / "dangling");
    std::filesystem::create_symlink("circle", directory / "circle");
    for (const std::string& path :
         {directory / "directory", directory / "fifo", directory / "link to fifo",
          directory / "dangling", directory / "circle", directory / "missing",
          std::string("/dev/zero"), std::string()}) {
        SCOPED_TRACE(path);
        EXPECT_FALSE(isRegularFile(path));
        EXPECT_EQ(readRegularFile(path, kEnough), std::nullopt);
        EXPECT_EQ(openRegularStream(path), nullptr);
        EXPECT_FALSE(RegularFileReader(path).isOpen());
        EXPECT_EQ(RegularFileReader(path).remaining(), 0U);
    }
}

// Such a file may hold any amount of text, or block for ever.
TEST(RegularFile, OnlyFifosSocketsAndDevicesMayNeverEnd) {
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink("fifo", directory / "link");
    EXPECT_TRUE(mayNeverEnd((directory / "fifo").c_str()));
    EXPECT_TRUE(mayNeverEnd((directory / "link").c_str()));
    EXPECT_TRUE(mayNeverEnd("/dev/zero"));
    EXPECT_FALSE(mayNeverEnd(directory.write("file", "").c_str()));
    EXPECT_FALSE(mayNeverEnd(directory.path().c_str()));
    EXPECT_FALSE(mayNeverEnd((directory / "missing").c_str()));
}

TEST(RegularFile, AFileThatTheKernelGeneratesReadsAsEmpty) {
    EXPECT_EQ(readRegularFile("/proc/self/status", kEnough), "");
    EXPECT_EQ(RegularFileReader("/proc/self/status").remaining(), 0U);
}

TEST(RegularFile, AFileThatIsNotReadableGivesNothing) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser reads every file";
    }
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", "text");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    EXPECT_TRUE(isRegularFile(path));
    EXPECT_EQ(readRegularFile(path, kEnough), std::nullopt);
}

TEST(RegularFile, IsReadInPieces) {
    const TemporaryDirectory directory;
    RegularFileReader file(directory.write("file", "1234567"));
    ASSERT_TRUE(file.isOpen());
    std::string piece(4, 'x');
    EXPECT_TRUE(file.read(&piece));
    EXPECT_EQ(piece, "1234");
    EXPECT_EQ(file.remaining(), 3U);
    EXPECT_TRUE(file.read(&piece));
    EXPECT_EQ(piece, "567");
    EXPECT_EQ(file.remaining(), 0U);
    EXPECT_TRUE(file.read(&piece));
    EXPECT_EQ(piece, "");
}

TEST(RegularFile, ReadsNoFurtherThanTheSizeThatItHad) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", "12345");
    RegularFileReader file(path);
    writeFile(path, "1234567890");
    std::string piece(8, 'x');
    EXPECT_TRUE(file.read(&piece));
    EXPECT_EQ(piece, "12345");
}

TEST(RegularFile, ThatShrinksEndsEarly) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", "1234567890");
    RegularFileReader file(path);
    std::filesystem::resize_file(path, 2);
    std::string piece(8, 'x');
    EXPECT_TRUE(file.read(&piece));
    EXPECT_EQ(piece, "12");
    EXPECT_EQ(file.remaining(), 0U);
}

TEST(RegularFile, OpensAsAStream) {
    const TemporaryDirectory directory;
    const pkgvet::StreamHandle stream = openRegularStream(directory.write("file", "ab"));
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(std::fgetc(stream.get()), 'a');
    EXPECT_EQ(std::fgetc(stream.get()), 'b');
    EXPECT_EQ(std::fgetc(stream.get()), EOF);
}

}  // namespace
