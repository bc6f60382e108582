// The application's icon in each size.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <regex>

#include "pkgvet/files/file_rules.h"
#include "pkgvet/rules/configuration.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/png_image.h"
#include "tests/support/rules/rule_run.h"
#include "tests/support/rules/rule_tree.h"

namespace {

namespace fs = std::filesystem;

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

class Icons : public testing::Test {
protected:
    // Adds a path to the package.
    void list(const std::string& path) { paths_.push_back(path); }
    // The same, with a file there.
    void install(const std::string& path, const std::string& content) {
        list(path);
        root_.write(path.substr(1), content);
    }

    RuleRun check(const RuleTree& tree, const std::string& packageName = "app") {
        const Configuration configuration = load(tree);
        const CapturedDescriptor wordsOfLibpng;
        return runRule([&](pkgvet::Findings* findings) {
            pkgvet::checkIcons(packageName, paths_, configuration, root_.path(), findings);
        });
    }

    TemporaryDirectory root_;
    std::vector<std::string> paths_;
};

TEST_F(Icons, EachSizeOfTheRuleSetIsThere) {
    install(iconPath("86"), pngImage(86, 86));
    install(iconPath("108"), pngImage(108, 108));
    const RuleRun run = check(treeWith({108, 86}));
    EXPECT_THAT(run.lines, IsEmpty());
    EXPECT_EQ(run.failures, 0U);
}

TEST_F(Icons, MissingOnesAreReportedInTheOrderOfTheSizes) {
    install(iconPath("86"), pngImage(86, 86));
    const RuleRun run = check(treeWith({172, 86, 108}));
    EXPECT_THAT(run.lines, ElementsAre(missing(iconPath("172")), missing(iconPath("108"))));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST_F(Icons, NothingIsReportedWhereIconsAreNotRequired) {
    const RuleRun run = check(treeWith({86, 108}, false));
    EXPECT_THAT(run.lines, IsEmpty());
    EXPECT_EQ(run.failures, 0U);
}

TEST_F(Icons, NoSizesNoFindings) {
    EXPECT_THAT(check(treeWith({})).lines, IsEmpty());
}

TEST_F(Icons, EveryFaultHasTheSameLine) {
    install(iconPath("1"), pngImage(2, 1));
    install(iconPath("2"), "not an image");
    install(iconPath("3"), "");
    list(iconPath("4"));
    list(iconPath("5"));
    fs::create_directories(root_ / iconPath("5").substr(1));
    install(iconPath("6"), "");
    fs::remove(root_ / iconPath("6").substr(1));
    fs::create_symlink("/dev/zero", root_ / iconPath("6").substr(1));
    install(iconPath("7"), pngSignature() + pngHeader(7, 7));
    std::vector<std::string> expected;
    for (const char* size : {"1", "2", "3", "4", "5", "6", "7", "-8"}) {
        expected.push_back(missing(iconPath(size)));
    }
    EXPECT_EQ(check(treeWith({1, 2, 3, 4, 5, 6, 7, -8})).lines, expected);
}

TEST_F(Icons, FileThatThePackageDoesNotListIsMissing) {
    root_.write(iconPath("86").substr(1), pngImage(86, 86));
    EXPECT_THAT(check(treeWith({86})).lines, ElementsAre(missing(iconPath("86"))));
}

TEST_F(Icons, WhatBlocksAReaderIsMissing) {
    install(iconPath("86"), "");
    const std::string file = root_ / iconPath("86").substr(1);
    fs::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0644), 0);
    EXPECT_THAT(check(treeWith({86})).lines, ElementsAre(missing(iconPath("86"))));
}

TEST_F(Icons, NoSlashIsPutBehindTheDirectory) {
    RuleTree tree = treeWith({86});
    tree.iconDir = "/opt/icons-";
    install("/opt/icons-86x86/apps/app.png", pngImage(86, 86));
    EXPECT_THAT(check(tree).lines, IsEmpty());
}

// The package's own paths are patterns: "p+" stands for one or more "p".
TEST_F(Icons, NameWithAPlusDoesNotMatchItself) {
    const std::string path = iconPath("86", "ap+");
    install(path, pngImage(86, 86));
    EXPECT_THAT(check(treeWith({86}), "ap+").lines, ElementsAre(missing(path)));
}

TEST_F(Icons, PathThatIsNotAPatternThrows) {
    list("/opt/(");
    install(iconPath("86"), pngImage(86, 86));
    EXPECT_THROW(check(treeWith({86})), std::regex_error);
    EXPECT_THROW(check(treeWith({86}, false)), std::regex_error);
    EXPECT_NO_THROW(check(treeWith({})));
}

}  // namespace
