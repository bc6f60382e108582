// Files that mention the home directory of the platform's default user.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/captured_log.h"
#include "tests/support/rule_run.h"
#include "tests/support/validator_record.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

RuleRun check(const RpmMeta& meta, const std::string& root) {
    ContentValidator validator = validatorOfNothing();
    return runRule(validator, [&] { validator.checkSandboxing(meta, root); });
}

RuleRun check(const PackageBuilder& builder) {
    const UnpackedPackage package(builder);
    return check(package.meta(), package.root());
}

std::string found(const std::string& path) {
    return errorLine("[" + path + "] Hardcoded path found");
}

TEST(Sandboxing, FilesOfAnyTypeAndPlaceAreSearched) {
    const RuleRun run =
        check(PackageBuilder("app")
                  .file("/opt/script", "#!/bin/sh\ncd /home/defaultuser\n")
                  .file("/usr/bin/app", std::string("\x7F"
                                                    "ELF\0\0/home/defaultuser/.local\0",
                                                    30))
                  .file("/usr/share/app/clean", "/home/user")
                  .file("/usr/share/applications/app.desktop", "Exec=/home/defaultuser/bin/run\n"));
    EXPECT_THAT(run.lines, ElementsAre(found("/opt/script"), found("/usr/bin/app"),
                                       found("/usr/share/applications/app.desktop")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST(Sandboxing, OneLineForAFile) {
    EXPECT_THAT(
        check(PackageBuilder("app").file("/x", "/home/defaultuser /home/defaultuser")).lines,
        ElementsAre(found("/x")));
}

TEST(Sandboxing, PathAtTheEndOfAFileCounts) {
    const RuleRun run = check(PackageBuilder("app")
                                  .file("/a", "home=/home/defaultuser")
                                  .file("/b", "home=/home/defaultus")
                                  .file("/c", "")
                                  .file("/d", "//home/defaultuser"));
    EXPECT_THAT(run.lines, ElementsAre(found("/a")));
}

TEST(Sandboxing, PathAcrossPiecesOfALargeFileIsFound) {
    const std::string path = "/home/defaultuser";
    for (const std::size_t offset : {1U, 8U, 16U}) {
        const TemporaryDirectory root;
        root.write("x", std::string(256 * 1024 - offset, 'x') + path);
        EXPECT_THAT(check(metaOf(PackageBuilder("app").ghost("/x")), root.path()).lines,
                    ElementsAre(found("/x")));
    }
}

TEST(Sandboxing, LinksAreFollowed) {
    const RuleRun run = check(PackageBuilder("app")
                                  .file("/a/file", "/home/defaultuser")
                                  .link("/b", "a/file")
                                  .link("/c", "a")
                                  .link("/d", "missing"));
    EXPECT_THAT(run.lines, ElementsAre(found("/a/file"), found("/b")));
}

TEST(Sandboxing, WhatIsNoRegularFileIsPassedOver) {
    const TemporaryDirectory root;
    ASSERT_EQ(mkfifo((root / "fifo").c_str(), 0644), 0);
    std::filesystem::create_directory(root / "directory");
    std::filesystem::create_symlink("/dev/zero", root / "zero");
    const RuleRun run = check(metaOf(PackageBuilder("app")
                                         .ghost("/directory")
                                         .ghost("/fifo")
                                         .ghost("/missing")
                                         .ghost("/zero")),
                              root.path());
    EXPECT_THAT(run.lines, IsEmpty());
    EXPECT_EQ(run.failures, 0U);
}

}  // namespace
