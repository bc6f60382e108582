// The packages that a command line names.
#include "cli/command/input.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/program.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;

namespace fs = std::filesystem;

std::vector<std::string> pathsOf(const InputOptions& options) {
    std::vector<std::string> paths;
    for (const Input& input : collectInput(options).packages) {
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
    EXPECT_THAT(pathsOf(root.path()),
                ElementsAre(root / ".hidden.rpm", root / "B.rpm", root / "a/b/y.rpm",
                            root / "a/z.rpm", root / "a.rpm", root / "b.rpm", root / "broken.rpm",
                            root / "d.rpm/x.rpm", root / "e.RPM"));
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

TEST(Input, WhatLeadsToNoPackageIsNamed) {
    const TemporaryDirectory root;
    root.write("packages/a.rpm", "");
    fs::create_directory(root / "none");
    InputOptions options;
    options.paths = {root / "packages", root / "none"};
    options.filesFrom = {root.write("list", "\n\r\n"), root.write("other", root / "none")};
    const CollectedInput collected = collectInput(options);
    EXPECT_EQ(collected.packages.size(), 1U);
    EXPECT_THAT(collected.empty,
                ElementsAre(root / "none" + " holds no *.rpm", root / "list" + " names no packages",
                            root / "none" + " holds no *.rpm"));
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
    const std::vector<Input> inputs = collectInput(options).packages;
    fs::permissions(root / "closed", fs::perms::owner_all);
    ASSERT_EQ(inputs.size(), 1U);
    EXPECT_EQ(inputs[0].path, root / "closed");
    EXPECT_EQ(inputs[0].cause, "Permission denied");
}

TEST(Input, DirectoryThatCannotBeLookedAtIsNotPassedOver) {
    const TemporaryDirectory root;
    root.write("closed/inner/a.rpm", "");
    fs::permissions(root / "closed", fs::perms::owner_read | fs::perms::others_read);
    fs::permissions(root.path(), fs::perms::all);
    EXPECT_TRUE(holdsForOrdinaryUser([&root] {
        InputOptions options;
        options.paths = {root.path()};
        const std::vector<Input> inputs = collectInput(options).packages;
        return inputs.size() == 1 && inputs[0].path == root / "closed/inner" &&
               inputs[0].cause == "Permission denied";
    }));
    fs::permissions(root / "closed", fs::perms::owner_all);
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

TEST(Input, LinesOfAListMayEndWithCarriageReturns) {
    const TemporaryDirectory root;
    InputOptions options;
    options.filesFrom = {root.write("list", "a.rpm\r\n\r\nb c.rpm\r\nd.rpm\r")};
    EXPECT_THAT(pathsOf(options), ElementsAre("a.rpm", "b c.rpm", "d.rpm"));
    options.nulSeparated = true;
    options.filesFrom = {root.write("other", std::string("a.rpm\r\0", 7))};
    EXPECT_THAT(pathsOf(options), ElementsAre("a.rpm\r"));
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
    const std::vector<Input> inputs = collectInput(options).packages;
    ASSERT_EQ(inputs.size(), 1U);
    EXPECT_EQ(inputs[0].cause, "a NUL in its name");
}

TEST(Input, UnreadableListIsAnError) {
    const TemporaryDirectory root;
    struct Case {
        std::string list;
        const char* cause;
    };
    const Case cases[] = {{root / "missing", "No such file or directory"},
                          {root.path().native(), "Is a directory"}};
    for (const auto& [list, cause] : cases) {
        SCOPED_TRACE(list);
        InputOptions options;
        options.filesFrom = {list};
        EXPECT_THROW(collectInput(options), std::runtime_error);
        const ProgramResult result = runPkgvet({"check", "--files-from", list});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors, "pkgvet: cannot read " + list + ": " + cause + "\n");
    }
}

// A job whose packages were not built must not be green.
TEST(Input, NothingToJudgeIsAnErrorUnlessPermitted) {
    const TemporaryDirectory root;
    struct Case {
        std::vector<std::string> line;
        std::string cause;
    };
    const Case cases[] = {
        {{"check", "--files-from", "-"}, "pkgvet: standard input names no packages\n"},
        {{"check", root.path()}, "pkgvet: " + root.path().native() + " holds no *.rpm\n"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.cause);
        const ProgramResult result = runPkgvet(test.line);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, test.cause +
                                     "pkgvet: there is nothing to judge, which "
                                     "--allow-empty would permit\n");
        std::vector<std::string> line = test.line;
        line.emplace_back("--allow-empty");
        const ProgramResult permitted = runPkgvet(line);
        EXPECT_EQ(permitted.status, 0);
        EXPECT_EQ(permitted.output, "0 packages: 0 accepted, 0 rejected, 0 not judged\n");
        EXPECT_EQ(permitted.errors, "");
    }
    EXPECT_EQ(runPkgvet({"check", "--allow-empty"}).status, 0);
}

}  // namespace
