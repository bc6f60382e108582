// The packages that a command line names.
#include "cli/command/input.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/program.h"
#include "tests/support/temporary_directory.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

std::vector<std::string> pathsOf(const InputOptions& options) {
    std::vector<std::string> paths;
    for (const Input& input : collectInput(options)) {
        paths.push_back(input.path);
    }
    return paths;
}

std::vector<std::string> pathsOf(const std::string& path) {
    InputOptions options;
    options.paths = {path};
    return pathsOf(options);
}

TEST(Input, PathsStandAsGivenAndInOrder) {
    InputOptions options;
    options.paths = {"b.rpm", "missing", "", "b.rpm", "/dev/null"};
    EXPECT_THAT(pathsOf(options), ElementsAre("b.rpm", "missing", "", "b.rpm", "/dev/null"));
}

TEST(Input, DirectoryStandsForEachPackageBelowItByName) {
    const TemporaryDirectory root;
    for (const char* name : {"b.rpm", "a.rpm", "c.txt", "rpm", "a/z.rpm", "a/b/y.rpm",
                             "d.rpm/x.rpm", ".hidden.rpm", "B.rpm", "e.RPM"}) {
        root.write(name, "");
    }
    fs::create_symlink("nowhere", root / "broken.rpm");
    EXPECT_THAT(
        pathsOf(root.path()),
        ElementsAre(root / ".hidden.rpm", root / "B.rpm", root / "a/b/y.rpm", root / "a/z.rpm",
                    root / "a.rpm", root / "b.rpm", root / "broken.rpm", root / "d.rpm/x.rpm"));
    EXPECT_EQ(pathsOf(root.path().native() + "/").front(), root / ".hidden.rpm");
}

TEST(Input, LinksAreFollowedOnce) {
    const TemporaryDirectory root;
    const TemporaryDirectory other;
    root.write("a/one.rpm", "");
    other.write("two.rpm", "");
    fs::create_symlink(root.path(), root / "a/loop");
    fs::create_symlink(other.path(), root / "b");
    fs::create_symlink(other.path(), root / "c");
    fs::create_symlink(other / "two.rpm", root / "d.rpm");
    EXPECT_THAT(pathsOf(root.path()),
                ElementsAre(root / "a/one.rpm", root / "b/two.rpm", root / "d.rpm"));
}

TEST(Input, EmptyDirectoryIsNothingToDo) {
    const TemporaryDirectory root;
    EXPECT_THAT(pathsOf(root.path()), IsEmpty());
}

TEST(Input, DirectoryThatCannotBeReadIsNotPassedOver) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser can read every directory";
    }
    const TemporaryDirectory root;
    root.write("closed/a.rpm", "");
    fs::permissions(root / "closed", fs::perms::none);
    InputOptions options;
    options.paths = {root.path()};
    const std::vector<Input> inputs = collectInput(options);
    fs::permissions(root / "closed", fs::perms::owner_all);
    ASSERT_EQ(inputs.size(), 1U);
    EXPECT_EQ(inputs[0].path, root / "closed");
    EXPECT_EQ(inputs[0].cause, "Permission denied");
}

TEST(Input, ListsComeAfterThePaths) {
    const TemporaryDirectory root;
    root.write("packages/a.rpm", "");
    InputOptions options;
    options.paths = {"first.rpm"};
    options.filesFrom = {root.write("list", "b c.rpm\n\n" + (root / "packages") + "\nlast.rpm"),
                         root.write("other", "other.rpm\n")};
    EXPECT_THAT(pathsOf(options), ElementsAre("first.rpm", "b c.rpm", root / "packages/a.rpm",
                                              "last.rpm", "other.rpm"));
}

TEST(Input, NulSeparatedListsHoldAnyName) {
    const TemporaryDirectory root;
    InputOptions options;
    options.nulSeparated = true;
    options.filesFrom = {root.write("list", std::string("a\nb.rpm\0c.rpm\0", 14))};
    EXPECT_THAT(pathsOf(options), ElementsAre("a\nb.rpm", "c.rpm"));
}

TEST(Input, NameWithANulIsNotCutShort) {
    const TemporaryDirectory root;
    InputOptions options;
    options.filesFrom = {root.write("list", std::string("a.rpm\0b\n", 8))};
    const std::vector<Input> inputs = collectInput(options);
    ASSERT_EQ(inputs.size(), 1U);
    EXPECT_EQ(inputs[0].cause, "a NUL in its name");
}

TEST(Input, UnreadableListIsAnError) {
    const TemporaryDirectory root;
    for (const std::string& list : {root / "missing", root.path().native()}) {
        InputOptions options;
        options.filesFrom = {list};
        EXPECT_THROW(collectInput(options), std::runtime_error);
        const ProgramResult result = runPkgvet({"check", "--files-from", list});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors, "pkgvet: cannot read " + list + "\n");
    }
}

TEST(Input, NothingToDoIsFine) {
    const ProgramResult result = runPkgvet({"check", "--files-from", "-"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, "0 packages: 0 accepted, 0 rejected, 0 not judged\n");
}

}  // namespace
