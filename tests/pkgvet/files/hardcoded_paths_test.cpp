// Files that mention the home directory of the platform's default user.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <iterator>

#include "pkgvet/base/file_modes.h"
#include "pkgvet/files/file_rules.h"
#include "tests/support/base/bytes_read.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_run.h"

namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;

class Sandboxing : public testing::Test {
protected:
    RuleRun check(const std::vector<std::string>& paths) {
        return runRule([&](pkgvet::Findings* findings) {
            const std::vector<mode_t> modes = pkgvet::readModes(root_.path(), paths);
            pkgvet::checkSandboxing(pkgvet::findHardcodedPaths(paths, modes, root_.path()),
                                    findings);
        });
    }

    TemporaryDirectory root_;
};

std::string found(const std::string& path) {
    return errorLine("[" + path + "] Hardcoded path found");
}

TEST_F(Sandboxing, FilesOfAnyTypeAndPlaceAreSearched) {
    root_.write("opt/script", "#!/bin/sh\ncd /home/defaultuser\n");
    root_.write("usr/bin/app", std::string("\x7F"
                                           "ELF\0\0/home/defaultuser/.local\0",
                                           30));
    root_.write("usr/share/clean", "/home/user");
    root_.write("usr/share/app.desktop", "Exec=/home/defaultuser/bin/run\n");
    root_.write("unlisted", "/home/defaultuser");
    const RuleRun run =
        check({"/usr/share/app.desktop", "/opt/script", "/usr/share/clean", "/usr/bin/app"});
    EXPECT_THAT(run.lines, ElementsAre(found("/usr/share/app.desktop"), found("/opt/script"),
                                       found("/usr/bin/app")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST_F(Sandboxing, OneLineForAFile) {
    root_.write("x", "/home/defaultuser /home/defaultuser");
    EXPECT_THAT(check({"/x"}).lines, ElementsAre(found("/x")));
}

TEST_F(Sandboxing, PathAtTheEndOfAFileCounts) {
    root_.write("a", "home=/home/defaultuser");
    root_.write("b", "home=/home/defaultus");
    root_.write("c", "");
    root_.write("d", "//home/defaultuser");
    EXPECT_THAT(check({"/a", "/b", "/c", "/d"}).lines, ElementsAre(found("/a")));
}

TEST_F(Sandboxing, PathAcrossPiecesOfALargeFileIsFound) {
    const std::string path = "/home/defaultuser";
    for (const std::size_t offset : {1U, 8U, 16U}) {
        root_.write("x", std::string(256 * 1024 - offset, 'x') + path);
        EXPECT_THAT(check({"/x"}).lines, ElementsAre(found("/x")));
    }
}

TEST_F(Sandboxing, LinesAreInTheOrderOfThePathsHoweverManyThereAre) {
    std::vector<std::string> paths;
    std::vector<std::string> expected;
    for (int i = 0; i < 2000; ++i) {
        paths.push_back("/" + std::to_string(i));
        const bool isHit = i % 3 == 0;
        root_.write(std::to_string(i),
                    std::string(i % 100, 'x') + (isHit ? "/home/defaultuser" : ""));
        if (isHit) {
            expected.push_back(found(paths.back()));
        }
    }
    EXPECT_EQ(check(paths).lines, expected);
}

TEST_F(Sandboxing, WhatIsKnownOfAFileIsNotSearchedFor) {
    const std::vector<std::string> paths = {"/hit", "/none", "/known", "/unknown", "/directory"};
    for (const char* name : {"hit", "known", "unknown"}) {
        root_.write(name, "/home/defaultuser");
    }
    root_.write("none", "text");
    fs::create_directory(root_ / "directory");
    const std::vector<mode_t> modes = pkgvet::readModes(root_.path(), paths);
    EXPECT_THAT(pkgvet::findHardcodedPaths(paths, modes, root_.path(),
                                           {true, true, false, std::nullopt, true}),
                ElementsAre("/hit", "/none", "/unknown"));
}

TEST_F(Sandboxing, LinksAreFollowed) {
    root_.write("a/file", "/home/defaultuser");
    fs::create_symlink("a/file", root_ / "b");
    fs::create_symlink("a", root_ / "c");
    fs::create_symlink("missing", root_ / "d");
    EXPECT_THAT(check({"/a/file", "/b", "/c", "/d"}).lines,
                ElementsAre(found("/a/file"), found("/b")));
}

TEST_F(Sandboxing, WhatIsNotARegularFileIsPassedOver) {
    ASSERT_EQ(mkfifo((root_ / "fifo").c_str(), 0644), 0);
    fs::create_directory(root_ / "directory");
    fs::create_symlink("/dev/zero", root_ / "zero");
    const RuleRun run = check({"/directory", "/fifo", "/missing", "/zero"});
    EXPECT_THAT(run.lines, IsEmpty());
    EXPECT_EQ(run.failures, 0U);
}

TEST_F(Sandboxing, AFileIsReadOnceWhateverTheNumberOfItsPaths) {
    const std::string text = std::string(100000, 'x') + "/home/defaultuser";
    root_.write("file", text);
    std::vector<std::string> paths(50, "/file");
    for (int i = 0; i < 50; ++i) {
        paths.push_back("/link" + std::to_string(i));
        fs::create_symlink("file", root_.path() / paths.back().substr(1));
    }
    RuleRun run;
    const std::uint64_t bytes = bytesReadBy([&] { run = check(paths); });
    std::vector<std::string> expected;
    std::transform(paths.begin(), paths.end(), std::back_inserter(expected), found);
    EXPECT_EQ(run.lines, expected);
    EXPECT_LT(bytes, 2 * text.size());
}

}  // namespace
