// The program's own mkdtemp.
#include "cli/worker/announced_mkdtemp.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "cli/worker/wire.h"
#include "tests/support/temporary_directory.h"

namespace {

using pkgvet::cli::announceDirectories;
using pkgvet::cli::directoryMessage;

TEST(AnnouncedDirectories, DirectoryIsMadeUnderANewNameForItsOwnerAlone) {
    const TemporaryDirectory parent;
    std::string path = parent / "dir.XXXXXX";
    const std::string pattern = path;
    ASSERT_EQ(mkdtemp(path.data()), path.data());
    EXPECT_NE(path, pattern);
    EXPECT_EQ(path.substr(0, path.size() - 6), pattern.substr(0, pattern.size() - 6));
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFDIR | S_IRWXU));
}

TEST(AnnouncedDirectories, FailuresAreThoseOfTheCLibrary) {
    struct Case {
        const char* name;
        std::string path;
        int error;
    };
    const Case cases[] = {
        {"short", "XXXXX", EINVAL},
        {"empty", "", EINVAL},
        {"placeholder not at the end", "/tmp/XXXXXX.", EINVAL},
        {"no parent", "/nowhere/XXXXXX", ENOENT},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        std::string path = test.path;
        EXPECT_EQ(mkdtemp(path.data()), nullptr);
        EXPECT_EQ(errno, test.error);
    }
}

TEST(AnnouncedDirectories, NameIsToldOnTheDescriptor) {
    const TemporaryDirectory parent;
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    std::string path = parent / "dir.XXXXXX";
    announceDirectories(ends[1]);
    EXPECT_NE(mkdtemp(path.data()), nullptr);
    announceDirectories(-1);
    std::array<char, 1024> told{};
    const ssize_t size = read(ends[0], told.data(), told.size());
    EXPECT_EQ(std::string(told.data(), static_cast<std::size_t>(size)), directoryMessage(path));
    close(ends[0]);
    close(ends[1]);
}

TEST(AnnouncedDirectories, NoneIsMadeThatNobodyWasToldOf) {
    const TemporaryDirectory parent;
    std::string path = parent / "dir.XXXXXX";
    const int deaf = open("/dev/null", O_RDONLY);
    announceDirectories(deaf);
    EXPECT_EQ(mkdtemp(path.data()), nullptr);
    announceDirectories(-1);
    close(deaf);
    EXPECT_TRUE(std::filesystem::is_empty(parent.path()));
}

}  // namespace
