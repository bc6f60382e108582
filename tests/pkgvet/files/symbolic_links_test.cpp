// Symbolic links that lead nowhere.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "pkgvet/rules/configuration.h"
#include "tests/support/captured_log.h"
#include "tests/support/rule_run.h"
#include "tests/support/rule_tree.h"
#include "tests/support/validator_record.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kLink = "/usr/share/app/current";

RuleRun check(const PackageBuilder& builder) {
    const UnpackedPackage package(builder);
    const Configuration configuration = load(RuleTree());
    ContentValidator validator = validatorOfNothing();
    return runRule(validator, [&] {
        validator.processPermissions(configuration, package.meta(), package.root());
    });
}

std::string beware(const std::string& path = kLink) {
    return infoLine("[" + path +
                    "] Bevare that symbolic links are only allowed for exclusive paths");
}

std::string targetLine(const std::string& target, const std::string& path = kLink) {
    return errorLine("[" + path +
                     "] Symbolic link is targeting to not allowed path for it: " + target);
}

struct Case {
    const char* name;
    std::string target;
    std::string judged;
};

TEST(SymbolicLinks, TargetOutsideThePackageIsAnErrorAsItIsWritten) {
    const std::vector<Case> cases = {
        {"absolute", "/opt/other/x", "/opt/other/x"},
        {"relative", "../other/x", "/usr/share/app/../other/x"},
        {"beside the link", "missing", "/usr/share/app/missing"},
        {"round about", "./x//y/..", "/usr/share/app/./x//y/.."},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const RuleRun run = check(PackageBuilder("app").link(kLink, test.target));
        EXPECT_THAT(run.lines, ElementsAre(beware(), targetLine(test.judged)));
        EXPECT_EQ(run.failures, pkgvet::kViolation);
    }
}

// An absolute target leads to this machine and not into the tree.
TEST(SymbolicLinks, TargetInThePackageIsFine) {
    const RuleRun run = check(PackageBuilder("app")
                                  .file("/usr/share/app/data-1", "")
                                  .link(kLink, "/usr/share/app/data-1"));
    EXPECT_THAT(run.lines, ElementsAre(beware()));
    EXPECT_EQ(run.failures, 0U);
}

TEST(SymbolicLinks, TargetIsNotTidiedUpBeforeItIsLookedFor) {
    const RuleRun run =
        check(PackageBuilder("app").ghost("/usr/share/app/data").link(kLink, "../app/data"));
    EXPECT_THAT(run.lines,
                ElementsAre(beware(), targetLine("/usr/share/app/../app/data"),
                            errorLine("[/usr/share/app/data] Failed to read file attributes")));
}

TEST(SymbolicLinks, PathsOfThePackageArePatterns) {
    EXPECT_THAT(
        check(
            PackageBuilder("app").file("/usr/share/app/a.b", "").link(kLink, "/usr/share/app/axb"))
            .lines,
        ElementsAre(beware()));
    EXPECT_THAT(
        check(
            PackageBuilder("app").file("/usr/share/app/a+b", "").link(kLink, "/usr/share/app/a+b"))
            .lines,
        ElementsAre(beware(), targetLine("/usr/share/app/a+b")));
    EXPECT_THAT(
        check(
            PackageBuilder("app").file("/usr/share/app/a+b", "").link(kLink, "/usr/share/app/aab"))
            .lines,
        ElementsAre(beware()));
}

TEST(SymbolicLinks, PathThatIsNoPatternThrowsForALinkThatNeedsIt) {
    const auto package = [](const std::string& target) {
        return PackageBuilder("app").file("/usr/share/app/a(", "").link(kLink, target);
    };
    EXPECT_NO_THROW(check(package("a(")));
    EXPECT_THROW(check(package("/missing")), std::regex_error);
}

TEST(SymbolicLinks, LinkIntoTheTreeIsJudgedByItsTarget) {
    const RuleRun run =
        check(PackageBuilder("app").file("/usr/share/app/data", "", "0646").link(kLink, "data"));
    EXPECT_THAT(run.lines,
                ElementsAre(errorLine("[/usr/share/app/current] Group or World writable file"),
                            errorLine("[/usr/share/app/data] Group or World writable file")));
}

TEST(SymbolicLinks, LinkToThisMachineIsJudgedByItsTarget) {
    EXPECT_THAT(check(PackageBuilder("app").link(kLink, "/etc/passwd")).lines, IsEmpty());
    EXPECT_THAT(check(PackageBuilder("app").link(kLink, "/dev/null")).lines,
                ElementsAre(errorLine("[/usr/share/app/current] Group or World writable file")));
    EXPECT_THAT(check(PackageBuilder("app").link(kLink, "/bin/sh")).lines,
                ElementsAre(errorLine("[/usr/share/app/current] File must not be executable")));
}

TEST(SymbolicLinks, ManyLinksAreJudgedEachByItself) {
    PackageBuilder builder("app");
    std::vector<std::string> expected;
    for (const std::string name : {"a", "b", "c"}) {
        const std::string path = "/usr/share/app/" + name;
        builder.link(path, "/missing/" + name);
        expected.push_back(beware(path));
        expected.push_back(targetLine("/missing/" + name, path));
    }
    EXPECT_EQ(check(builder).lines, expected);
}

}  // namespace
