// Directories that may vanish at installation.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/captured_log.h"
#include "tests/support/rule_run.h"
#include "tests/support/validator_record.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

RuleRun check(const PackageBuilder& builder, const RpmMeta& meta) {
    const TemporaryDirectory directory;
    const std::string file = builder.build(directory);
    ContentValidator validator(file);
    return runRule(validator, [&] { validator.checkEmptyDirectories(meta); });
}

RuleRun check(const PackageBuilder& builder) {
    return check(builder, metaOf(builder));
}

std::string emptyLine(const std::string& path) {
    return warningLine("[" + path +
                       "] Empty directory (can be omitted during package installation)");
}

TEST(EmptyDirectories, EmptyOnesAreWarningsAndPass) {
    const RuleRun run = check(PackageBuilder("app")
                                  .directory("/usr/share/app")
                                  .directory("/usr/share/app/a")
                                  .directory("/usr/share/app/b")
                                  .file("/usr/share/app/c", ""));
    EXPECT_THAT(run.lines,
                ElementsAre(emptyLine("/usr/share/app/a"), emptyLine("/usr/share/app/b")));
    EXPECT_EQ(run.failures, 0U);
}

TEST(EmptyDirectories, DirectoryOfADirectoryIsNotEmpty) {
    EXPECT_THAT(
        check(PackageBuilder("app").directory("/a").directory("/a/b").file("/a/b/.c", "")).lines,
        IsEmpty());
}

TEST(EmptyDirectories, DirectoryOfTheHeaderAloneIsPassedOver) {
    EXPECT_THAT(
        check(PackageBuilder("app").file("/x", ""), metaOf(PackageBuilder("app").directory("/a")))
            .lines,
        IsEmpty());
}

TEST(EmptyDirectories, LinksAreFollowed) {
    EXPECT_THAT(
        check(PackageBuilder("app").directory("/a").link("/b", "a").link("/c", "missing")).lines,
        ElementsAre(emptyLine("/a"), emptyLine("/b")));
}

TEST(EmptyDirectories, DirectoryThatCannotBeReadIsAnException) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser reads every directory";
    }
    EXPECT_THROW(check(PackageBuilder("app").directory("/a", "0300")),
                 std::filesystem::filesystem_error);
}

}  // namespace
