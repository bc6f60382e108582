// The program's own mkdtemp.
#include "cli/worker/prepared_mkdtemp.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <cerrno>

#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::cli::chooseName;
using pkgvet::cli::makeDirectory;
using pkgvet::cli::prepareDirectory;

TEST(PreparedMkdtemp, DirectoryIsMadeUnderANewNameForItsOwnerAlone) {
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

TEST(PreparedMkdtemp, FailuresAreThoseOfTheCLibrary) {
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

TEST(PreparedMkdtemp, DirectoryMayHaveAnotherMode) {
    const TemporaryDirectory parent;
    struct stat status {};
    ASSERT_EQ(stat(makeDirectory(parent / "dir.XXXXXX", S_IRWXU | S_ISVTX).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFDIR | S_IRWXU | S_ISVTX));
}

TEST(PreparedMkdtemp, NameIsChosenAndNothingMade) {
    const TemporaryDirectory parent;
    const std::string name = chooseName(parent / "dir.XXXXXX");
    EXPECT_EQ(name.size(), std::string(parent / "dir.XXXXXX").size());
    EXPECT_NE(name, chooseName(parent / "dir.XXXXXX"));
    EXPECT_TRUE(std::filesystem::is_empty(parent.path()));
    EXPECT_EQ(chooseName("XXXXX"), "");
}

TEST(PreparedMkdtemp, NamesNeverLookLikeThatOfASharedObject) {
    const TemporaryDirectory parent;
    for (int i = 0; i < 2000; ++i) {
        const std::string path = makeDirectory(parent / "dir.XXXXXX");
        EXPECT_EQ(path.find(".so"), std::string::npos);
        EXPECT_EQ(path.find('o', path.size() - 6), std::string::npos);
    }
}

TEST(PreparedMkdtemp, DirectoryThatWasPreparedIsGiven) {
    EXPECT_TRUE(holdsInChild([] {
        prepareDirectory("/tmp/dir.abcdef");
        std::string path = "/tmp/dir.XXXXXX";
        return mkdtemp(path.data()) == path.data() && path == "/tmp/dir.abcdef" &&
               !std::filesystem::exists(path);
    }));
}

}  // namespace
