// The application's icon in each size.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <regex>

#include "pkgvet/rules/configuration.h"
#include "tests/support/captured_log.h"
#include "tests/support/png_image.h"
#include "tests/support/rule_run.h"
#include "tests/support/rule_tree.h"
#include "tests/support/validator_record.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string iconPath(const std::string& size, const std::string& name = "app") {
    return "/usr/share/icons/hicolor/" + size + "x" + size + "/apps/" + name + ".png";
}

std::string missing(const std::string& path) {
    return errorLine("[" + path + "] Icon not found or file resolution is incorrect");
}

RuleTree treeWith(const std::vector<int>& sizes, bool required = true) {
    RuleTree tree;
    tree.iconSizes = sizes;
    tree.regular().requireIcons = required;
    return tree;
}

RuleRun check(const RpmMeta& meta, const std::string& root, const RuleTree& tree) {
    const Configuration configuration = load(tree);
    ContentValidator validator = validatorOfNothing();
    return runRule(validator, [&] { validator.checkIcons(configuration, meta, root); });
}

RuleRun check(const PackageBuilder& builder, const RuleTree& tree) {
    const UnpackedPackage package(builder);
    return check(package.meta(), package.root(), tree);
}

TEST(Icons, EachSizeOfTheRuleSetIsThere) {
    const RuleRun run = check(PackageBuilder("app")
                                  .file(iconPath("86"), pngImage(86, 86))
                                  .file(iconPath("108"), pngImage(108, 108)),
                              treeWith({108, 86}));
    EXPECT_THAT(run.lines, IsEmpty());
    EXPECT_EQ(run.failures, 0U);
}

TEST(Icons, MissingOnesAreReportedInTheOrderOfTheSizes) {
    const PackageBuilder builder = PackageBuilder("app").file(iconPath("86"), pngImage(86, 86));
    const RuleRun run = check(builder, treeWith({172, 86, 108}));
    EXPECT_THAT(run.lines, ElementsAre(missing(iconPath("172")), missing(iconPath("108"))));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST(Icons, NothingIsReportedWhereIconsAreNotRequired) {
    const RuleRun run = check(PackageBuilder("app"), treeWith({86, 108}, false));
    EXPECT_THAT(run.lines, IsEmpty());
    EXPECT_EQ(run.failures, 0U);
}

TEST(Icons, NoSizesNoFindings) {
    EXPECT_THAT(check(PackageBuilder("app"), treeWith({})).lines, IsEmpty());
}

TEST(Icons, EveryFaultHasTheSameLine) {
    const RuleRun run = check(PackageBuilder("app")
                                  .file(iconPath("1"), pngImage(2, 1))
                                  .file(iconPath("2"), "no image")
                                  .file(iconPath("3"), "")
                                  .ghost(iconPath("4"))
                                  .directory(iconPath("5"))
                                  .link(iconPath("6"), "/dev/zero"),
                              treeWith({1, 2, 3, 4, 5, 6, -7}));
    std::vector<std::string> expected;
    for (const char* size : {"1", "2", "3", "4", "5", "6", "-7"}) {
        expected.push_back(missing(iconPath(size)));
    }
    EXPECT_EQ(run.lines, expected);
}

TEST(Icons, FileThatThePackageDoesNotListIsMissing) {
    const TemporaryDirectory root;
    root.write(iconPath("86").substr(1), pngImage(86, 86));
    EXPECT_THAT(check(metaOf(PackageBuilder("app")), root.path(), treeWith({86})).lines,
                ElementsAre(missing(iconPath("86"))));
}

TEST(Icons, WhatBlocksAReaderIsMissing) {
    const TemporaryDirectory root;
    const std::string path = root.write(iconPath("86").substr(1), "");
    std::filesystem::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0644), 0);
    EXPECT_THAT(
        check(metaOf(PackageBuilder("app").ghost(iconPath("86"))), root.path(), treeWith({86}))
            .lines,
        ElementsAre(missing(iconPath("86"))));
}

TEST(Icons, NoSlashIsPutBehindTheDirectory) {
    RuleTree tree = treeWith({86});
    tree.iconDir = "/opt/icons-";
    EXPECT_THAT(
        check(PackageBuilder("app").file("/opt/icons-86x86/apps/app.png", pngImage(86, 86)), tree)
            .lines,
        IsEmpty());
}

// The package's own paths are patterns: "p+" stands for one or more "p".
TEST(Icons, NameWithAPlusDoesNotMatchItself) {
    const std::string path = iconPath("86", "ap+");
    EXPECT_THAT(check(PackageBuilder("ap+").file(path, pngImage(86, 86)), treeWith({86})).lines,
                ElementsAre(missing(path)));
}

TEST(Icons, PathThatIsNoPatternThrows) {
    const PackageBuilder builder =
        PackageBuilder("app").ghost("/opt/(").file(iconPath("86"), pngImage(86, 86));
    EXPECT_THROW(check(builder, treeWith({86})), std::regex_error);
    EXPECT_NO_THROW(check(builder, treeWith({})));
}

}  // namespace
