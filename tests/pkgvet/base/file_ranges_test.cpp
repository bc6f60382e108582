// Ranges of a regular file, and of no other.
#include "pkgvet/base/file_ranges.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <filesystem>
#include <limits>

#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::FileRanges;

constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();

TEST(FileRanges, GivesRangesThatItHolds) {
    const TemporaryDirectory directory;
    const FileRanges file(directory.write("file", "abcdef"));
    ASSERT_TRUE(file.isOpen());
    EXPECT_EQ(file.size(), 6U);
    EXPECT_EQ(file.read(0, 6), "abcdef");
    EXPECT_EQ(file.read(2, 3), "cde");
    EXPECT_EQ(file.read(6, 0), "");
}

TEST(FileRanges, GivesNothingThatRunsOverItsEnd) {
    const TemporaryDirectory directory;
    const FileRanges file(directory.write("file", "abcdef"));
    EXPECT_FALSE(file.read(0, 7));
    EXPECT_FALSE(file.read(6, 1));
    EXPECT_FALSE(file.read(7, 0));
    EXPECT_FALSE(file.read(1, kHuge));
    EXPECT_FALSE(file.read(kHuge, 1));
    EXPECT_FALSE(file.read(kHuge, kHuge));
}

TEST(FileRanges, GivesNothingThatHasBeenCutOffSince) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", "abcdef");
    const FileRanges file(path);
    std::filesystem::resize_file(path, 3);
    EXPECT_EQ(file.read(0, 3), "abc");
    EXPECT_FALSE(file.read(0, 6));
    EXPECT_FALSE(file.read(4, 1));
}

TEST(FileRanges, StaysReadableWhenItsNameIsGone) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", "abc");
    const FileRanges file(path);
    std::filesystem::remove(path);
    EXPECT_EQ(file.read(0, 3), "abc");
}

TEST(FileRanges, OpensThroughALink) {
    const TemporaryDirectory directory;
    std::filesystem::create_symlink(directory.write("file", "abc"), directory / "link");
    const FileRanges file(directory / "link");
    EXPECT_EQ(file.read(0, 3), "abc");
}

void makeSocket(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    const pkgvet::Descriptor descriptor(socket(AF_UNIX, SOCK_STREAM, 0));
    ASSERT_EQ(bind(descriptor.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)),
              0);
}

// A fifo without a writer, and a device, would hold a plain open or a plain read for ever.
TEST(FileRanges, NothingElseOpens) {
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0600), 0);
    makeSocket(directory / "socket");
    std::filesystem::create_symlink(directory / "fifo", directory / "link to a fifo");
    std::filesystem::create_symlink("/dev/zero", directory / "link to a device");
    std::filesystem::create_symlink("nowhere", directory / "dangling link");
    std::filesystem::create_symlink("circle", directory / "circle");
    const char* const names[] = {
        ".",      "fifo",   "socket", "link to a fifo", "link to a device", "dangling link",
        "circle", "missing"};
    for (const char* name : names) {
        SCOPED_TRACE(name);
        const FileRanges file(directory / name);
        EXPECT_FALSE(file.isOpen());
        EXPECT_EQ(file.size(), 0U);
        EXPECT_FALSE(file.read(0, 0));
    }
}

// Some state the size of the whole address space, and one of them is an ELF file of the kernel's
// memory.
TEST(FileRanges, AFileThatTheKernelMakesUpHoldsNothing) {
    for (const char* path : {"/proc/self/status", "/sys/kernel/notes", "/proc/kcore"}) {
        SCOPED_TRACE(path);
        const FileRanges file(path);
        EXPECT_EQ(file.size(), 0U);
        EXPECT_FALSE(file.read(0, 1));
    }
}

}  // namespace
