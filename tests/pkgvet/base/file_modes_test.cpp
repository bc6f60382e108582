// The modes of the files of a package.
#include "pkgvet/base/file_modes.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/base/temporary_directory.h"

namespace {

TEST(FileModes, GoWithThePathsAndFollowLinks) {
    const TemporaryDirectory root;
    chmod(root.write("file", "x").c_str(), 0751);
    std::filesystem::create_directory(root / "directory");
    chmod((root / "directory").c_str(), 0700);
    std::filesystem::create_symlink("file", root / "link");
    std::filesystem::create_symlink("nowhere", root / "dangling");
    mkfifo((root / "fifo").c_str(), 0600);
    chmod((root / "fifo").c_str(), 0600);
    const std::vector<mode_t> expected = {S_IFREG | 0751, 0, S_IFDIR | 0700,
                                          S_IFREG | 0751, 0, S_IFIFO | 0600};
    EXPECT_EQ(pkgvet::readModes(root.path(),
                                {"/file", "/missing", "/directory", "/link", "/dangling", "/fifo"}),
              expected);
}

TEST(FileModes, CallersSeeAllThatIsKnownOfEachPath) {
    const TemporaryDirectory root;
    root.write("file", "text");
    std::vector<off_t> sizes;
    pkgvet::readModes(root.path(), {"/missing", "/file"},
                      [&sizes](const struct stat& status) { sizes.push_back(status.st_size); });
    EXPECT_EQ(sizes, (std::vector<off_t>{0, 4}));
}

TEST(FileModes, RootIsPutInFrontAsItIs) {
    const TemporaryDirectory root;
    chmod(root.write("file", "x").c_str(), 0644);
    EXPECT_EQ(pkgvet::readModes(root / "fi", {"le"}), std::vector<mode_t>{S_IFREG | 0644});
    EXPECT_TRUE(pkgvet::readModes(root.path(), {}).empty());
}

}  // namespace
