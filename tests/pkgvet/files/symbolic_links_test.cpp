// Symbolic links that lead nowhere.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <regex>

#include "pkgvet/base/file_modes.h"
#include "pkgvet/files/file_rules.h"
#include "pkgvet/rules/configuration.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_run.h"
#include "tests/support/rules/rule_tree.h"

namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kLink = "/usr/share/app/current";

// The links of a package, and its other paths.
class SymbolicLinks : public testing::Test {
protected:
    void link(const std::string& path, const std::string& target) {
        const fs::path file = root_ / path.substr(1);
        fs::create_directories(file.parent_path());
        fs::remove(file);
        fs::create_symlink(target, file);
        paths_.push_back(path);
    }

    void file(const std::string& path, mode_t mode = 0644) {
        ASSERT_EQ(chmod(root_.write(path.substr(1), "").c_str(), mode), 0);
        paths_.push_back(path);
    }

    RuleRun check() {
        const Configuration configuration = load(RuleTree());
        const std::vector<std::string> owners(paths_.size(), "root");
        return runRule([&](pkgvet::Findings* findings) {
            pkgvet::processPermissions("app", paths_, pkgvet::readModes(root_.path(), paths_),
                                       owners, owners, configuration, root_.path(), findings);
        });
    }

    TemporaryDirectory root_;
    std::vector<std::string> paths_;
};

std::string beware(const std::string& path = kLink) {
    return infoLine("[" + path +
                    "] Bevare that symbolic links are only allowed for exclusive paths");
}

std::string targetLine(const std::string& target, const std::string& path = kLink) {
    return errorLine("[" + path +
                     "] Symbolic link is targeting to not allowed path for it: " + target);
}

TEST_F(SymbolicLinks, TargetOutsideThePackageIsAnErrorAsItIsWritten) {
    struct Case {
        const char* name;
        const char* target;
        const char* judged;
    };
    for (const Case& test : {
             Case{"absolute", "/opt/other/x", "/opt/other/x"},
             Case{"relative", "../other/x", "/usr/share/app/../other/x"},
             Case{"beside the link", "missing", "/usr/share/app/missing"},
             Case{"round about", "./x//y/..", "/usr/share/app/./x//y/.."},
         }) {
        SCOPED_TRACE(test.name);
        paths_.clear();
        link(kLink, test.target);
        const RuleRun run = check();
        EXPECT_THAT(run.lines, ElementsAre(beware(), targetLine(test.judged)));
        EXPECT_EQ(run.failures, pkgvet::kViolation);
    }
}

// An absolute target leads to this machine and not into the tree.
TEST_F(SymbolicLinks, TargetInThePackageIsFine) {
    file("/usr/share/app/data-1");
    link(kLink, "/usr/share/app/data-1");
    const RuleRun run = check();
    EXPECT_THAT(run.lines, ElementsAre(beware()));
    EXPECT_EQ(run.failures, 0U);
}

TEST_F(SymbolicLinks, TargetIsNotTidiedUpBeforeItIsLookedFor) {
    link(kLink, "../app/data");
    paths_.emplace_back("/usr/share/app/data");
    EXPECT_THAT(check().lines,
                ElementsAre(beware(), targetLine("/usr/share/app/../app/data"),
                            errorLine("[/usr/share/app/data] Failed to read file attributes")));
}

TEST_F(SymbolicLinks, PathsOfThePackageArePatterns) {
    file("/usr/share/app/a.b");
    file("/usr/share/app/c+d");
    link("/1", "/usr/share/app/axb");
    link("/2", "/usr/share/app/c+d");
    link("/3", "/usr/share/app/ccd");
    EXPECT_THAT(check().lines, ElementsAre(beware("/1"), beware("/2"),
                                           targetLine("/usr/share/app/c+d", "/2"), beware("/3")));
}

TEST_F(SymbolicLinks, PathThatIsNotAPatternThrowsForALinkThatNeedsIt) {
    file("/usr/share/app/a(");
    link(kLink, "a(");
    EXPECT_NO_THROW(check());
    link("/x", "/missing");
    EXPECT_THROW(check(), std::regex_error);
}

TEST_F(SymbolicLinks, LinkIntoTheTreeIsJudgedByItsTarget) {
    link(kLink, "data");
    file("/usr/share/app/data", 0646);
    EXPECT_THAT(check().lines,
                ElementsAre(errorLine("[/usr/share/app/current] Group or World writable file"),
                            errorLine("[/usr/share/app/data] Group or World writable file")));
}

TEST_F(SymbolicLinks, LinkToThisMachineIsJudgedByItsTarget) {
    link("/a", "/etc/passwd");
    link("/b", "/dev/null");
    link("/c", "/bin/sh");
    EXPECT_THAT(check().lines, ElementsAre(errorLine("[/b] Group or World writable file"),
                                           errorLine("[/c] File must not be executable")));
}

TEST_F(SymbolicLinks, ManyLinksAreJudgedEachByItself) {
    std::vector<std::string> expected;
    for (const std::string name : {"a", "b", "c"}) {
        const std::string path = "/usr/share/app/" + name;
        link(path, "/missing/" + name);
        expected.push_back(beware(path));
        expected.push_back(targetLine("/missing/" + name, path));
    }
    EXPECT_EQ(check().lines, expected);
}

}  // namespace
