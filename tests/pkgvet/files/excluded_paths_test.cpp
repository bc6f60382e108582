// Where a package may install its files.
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

constexpr const char* kBinary = "/usr/bin/app";

std::string notAllowed(const std::string& path) {
    return errorLine("[" + path + "] Installation not allowed in this location");
}

std::string extensionNotAllowed(const std::string& path) {
    return notAllowed(path) + ": forbidden file extension";
}

std::string debugLine() {
    return errorLine("[debug] Debug symbols or sources must not be included");
}

std::string missingBinary() {
    return errorLine("[binary] Main binary must exist, but it is not found");
}

// A package "app" that lists paths in its header.
PackageBuilder packageWith(const std::vector<std::string>& paths) {
    PackageBuilder builder("app");
    for (const std::string& path : paths) {
        builder.ghost(path);
    }
    return builder;
}

RuleRun check(ContentValidator& validator, const RpmMeta& meta, const RuleTree& tree = {},
              const std::string& root = {}) {
    const Configuration configuration = load(tree);
    return runRule(validator, [&] { validator.checkExcludedPaths(configuration, meta, root); });
}

RuleRun check(const PackageBuilder& builder, const RuleTree& tree = {}) {
    ContentValidator validator = validatorOfNothing();
    return check(validator, metaOf(builder), tree);
}

struct Case {
    const char* path;
    std::vector<std::string> lines;
};

// One package for all rows; the lines come in the order of its paths, which is not that of the
// rows.
void expectLines(const std::vector<Case>& cases, const RuleTree& tree = {}) {
    std::vector<std::string> paths = {kBinary};
    std::vector<std::string> expected;
    for (const Case& test : cases) {
        paths.emplace_back(test.path);
        expected.insert(expected.end(), test.lines.begin(), test.lines.end());
    }
    EXPECT_THAT(check(packageWith(paths), tree).lines,
                testing::UnorderedElementsAreArray(expected));
}

TEST(ExcludedPaths, PackagesOwnPlacesAreAllowed) {
    expectLines({
        {"/usr/share/app/qml/main.qml", {}},
        {"/usr/share/app/data.git", {}},  // the suffix is not looked at here
        {"/usr/share/icons/hicolor/86x86/apps/other.png", {}},
        {"/usr/share/other/x", {notAllowed("/usr/share/other/x")}},
    });
}

TEST(ExcludedPaths, DesktopFileBearsThePackagesName) {
    EXPECT_THAT(check(PackageBuilder("pilot")
                          .ghost("/usr/bin/pilot")
                          .ghost("/usr/share/applications/copilot.desktop")
                          .ghost("/usr/share/applications/pilot.desktop")
                          .ghost("/usr/share/applications/pilotxdesktop"))
                    .lines,
                ElementsAre(notAllowed("/usr/share/applications/copilot.desktop"),
                            notAllowed("/usr/share/applications/pilotxdesktop")));
}

TEST(ExcludedPaths, PatternsAreNotAnchored) {
    expectLines({
        {"/usr/share/appendix/x", {}},
        {"/home/usr/share/app", {}},
        {"/opt/usr/share/icons/hicolor/x", {}},
        {"/usr/share/applications/other.desktop", {}},
        {"/opt/usr/libexec/application", {}},
    });
}

TEST(ExcludedPaths, SharedPlaceWithoutOrganisation) {
    expectLines({
        {"/usr/share/common", {notAllowed("/usr/share/common")}},
        {"/opt/usr/share/common/x", {notAllowed("/opt/usr/share/common/x")}},
    });
}

// The "." of a name counts as a dot.
TEST(ExcludedPaths, NameIsEscaped) {
    const std::string name = "org.ex+ample";
    ContentValidator validator = validatorOfNothing();
    const RuleRun run = check(validator, metaOf(PackageBuilder(name)
                                                    .ghost("/usr/bin/org.ex+ample")
                                                    .ghost("/usr/share/org.ex+ample/x")
                                                    .ghost("/usr/share/orgxex+ample/x")
                                                    .ghost("/usr/share/org.exxample/x")));
    EXPECT_THAT(run.lines, ElementsAre(notAllowed("/usr/share/org.exxample/x"),
                                       notAllowed("/usr/share/orgxex+ample/x")));
}

TEST(ExcludedPaths, ThirdPartyLibrariesHaveToBeListed) {
    RuleTree tree;
    tree.regular().paths = {"/usr/lib/3rdparty/app/a/.*"};
    expectLines(
        {
            {"/usr/lib/3rdparty/app/a/x.git", {}},
            {"/usr/lib/3rdparty/app/b/x", {notAllowed("/usr/lib/3rdparty/app/b/x")}},
            {"/usr/lib/3rdparty/app/b/x.git",
             {extensionNotAllowed("/usr/lib/3rdparty/app/b/x.git")}},
        },
        tree);
}

TEST(ExcludedPaths, ListedPathsAreWholePatterns) {
    RuleTree tree;
    tree.regular().paths = {"/opt/[ab]/.*", "/srv/x"};
    expectLines(
        {
            {"/opt/a/x", {}},
            {"/opt/c/x", {notAllowed("/opt/c/x")}},
            {"/srv/x", {}},
            {"/srv/xy", {notAllowed("/srv/xy")}},
            {"/x/opt/a/x", {notAllowed("/x/opt/a/x")}},
        },
        tree);
}

TEST(ExcludedPaths, ForbiddenSuffixIsRejectedEvenIfListed) {
    RuleTree tree;
    tree.regular().paths = {"/opt/.*"};
    expectLines({{"/opt/app/data.git", {extensionNotAllowed("/opt/app/data.git")}},
                 {"/opt/app/.git/config", {}},
                 {"/opt/app/.swp", {extensionNotAllowed("/opt/app/.swp")}},
                 {"/srv/data.svn", {extensionNotAllowed("/srv/data.svn")}}},
                tree);
}

TEST(ExcludedPaths, SuffixesAreComparedByByte) {
    ContentValidator validator = validatorOfNothing();
    for (const char* path :
         {"x.git", ".git", "/a/.svn", "foo.hg", "x.bzr", "x.cvs", "a/.DS_Store", "x.swp"}) {
        EXPECT_TRUE(validator.isBlacklistedExtension(path)) << path;
    }
    for (const char* path : {"", "git", "/.git/config", "x.GIT", ".ds_store", "x.gitx", "x.git/"}) {
        EXPECT_FALSE(validator.isBlacklistedExtension(path)) << path;
    }
}

TEST(ExcludedPaths, SystemsBinDirectoryIsNotOwned) {
    ContentValidator validator = validatorOfNothing();
    const RuleRun run = check(validator, metaOf(packageWith({kBinary}).directory("/usr/bin")));
    EXPECT_THAT(
        run.lines,
        ElementsAre(errorLine("[/usr/bin] Direct package ownership of /usr/bin is disallowed")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
    EXPECT_TRUE(recordOf(validator).fileFacts.binDirOwned);
}

TEST(ExcludedPaths, OtherBinariesHaveToBeListed) {
    expectLines({{"/usr/bin/helper", {notAllowed("/usr/bin/helper")}},
                 {"/usr/bin/app2", {notAllowed("/usr/bin/app2")}}});
}

TEST(ExcludedPaths, LibexecFilesOfThePackageAreAllowedUnseen) {
    RuleTree tree;
    tree.libexecDir = "/opt/lib+exec/";
    expectLines({{"/opt/lib+exec/app/script", {}},
                 {"/opt/lib+exec/app2", {}},
                 {"/opt/lib+exec/other", {notAllowed("/opt/lib+exec/other")}},
                 {"/usr/libexec/app/x", {notAllowed("/usr/libexec/app/x")}}},
                tree);
}

TEST(ExcludedPaths, DebugFilesAreReportedWhetherListedOrNot) {
    RuleTree tree;
    tree.regular().paths = {"/usr/lib/debug/.*"};
    ContentValidator validator = validatorOfNothing();
    const RuleRun run = check(
        validator, metaOf(packageWith({kBinary, "/usr/lib/debug/x", "/usr/src/debug/x"})), tree);
    EXPECT_THAT(run.lines, ElementsAre(debugLine(), debugLine(), notAllowed("/usr/src/debug/x")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
    EXPECT_TRUE(validator.debugDir());
}

TEST(ExcludedPaths, ListedDebugFileStillRejects) {
    RuleTree tree;
    tree.regular().paths = {"/usr/lib/debug/.*"};
    const RuleRun run = check(packageWith({kBinary, "/usr/lib/debug/x"}), tree);
    EXPECT_THAT(run.lines, ElementsAre(debugLine()));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST(ExcludedPaths, MainBinaryIsWanted) {
    ContentValidator validator = validatorOfNothing();
    EXPECT_TRUE(validator.binRequired());
    EXPECT_THAT(check(validator, metaOf(packageWith({kBinary}))).lines, IsEmpty());
    EXPECT_TRUE(validator.unwantedBinExists());
    EXPECT_FALSE(validator.binRequired());
}

TEST(ExcludedPaths, MissingMainBinaryIsOneLineAtTheEnd) {
    EXPECT_THAT(check(PackageBuilder("app")).lines, ElementsAre(missingBinary()));
    const RuleRun run = check(packageWith({"/opt/x", "/usr/bin/other"}));
    EXPECT_THAT(run.lines,
                ElementsAre(notAllowed("/opt/x"), notAllowed("/usr/bin/other"), missingBinary()));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST(ExcludedPaths, BinaryOnceSeenStaysSeen) {
    ContentValidator validator = validatorOfNothing();
    const Configuration configuration = load(RuleTree());
    validator.checkExcludedPaths(configuration, metaOf(packageWith({kBinary})), "");
    EXPECT_THAT(check(validator, metaOf(PackageBuilder("app"))).lines, IsEmpty());
}

TEST(ExcludedPaths, BinaryDirectoryIsThatOfTheRuleSet) {
    RuleTree tree;
    tree.binDir = "/opt/bin-";
    EXPECT_THAT(check(packageWith({"/opt/bin-app"}), tree).lines, IsEmpty());
    EXPECT_THAT(check(packageWith({kBinary}), tree).lines,
                ElementsAre(notAllowed(kBinary), missingBinary()));
}

TEST(ExcludedPaths, BadPatternThrowsWhenAPathGetsToIt) {
    RuleTree tree;
    tree.regular().paths = {"/opt/x", "("};
    EXPECT_NO_THROW(check(packageWith({kBinary, "/usr/share/app/x", "/opt/x"}), tree));
    EXPECT_THROW(check(packageWith({kBinary, "/opt/y"}), tree), std::regex_error);
}

TEST(ExcludedPaths, SharedPlaceIsThatOfOrganisationAndApplication) {
    ContentValidator validator = validatorOfNothing();
    recordOf(validator).desktopFacts.organizationName = "com.example";
    recordOf(validator).desktopFacts.applicationName = "App";
    const RuleRun run = check(
        validator,
        metaOf(packageWith({kBinary, "/usr/share/common/com.example/App/x",
                            "/usr/share/common/com.example/Other/x",
                            "/usr/share/common/com.exampleX", "/usr/share/common/comXexample"})
                   .directory("/usr/share/common/com.example")
                   .directory("/usr/share/common/com.example/App")));
    EXPECT_THAT(run.lines, ElementsAre(notAllowed("/usr/share/common/com.exampleX"),
                                       notAllowed("/usr/share/common/comXexample")));
}

TEST(ExcludedPaths, QmlOnlyPackageHasNoBinary) {
    ContentValidator validator = validatorOfNothing();
    recordOf(validator).desktopFacts.qmlOnly = true;
    EXPECT_THAT(check(validator, metaOf(PackageBuilder("app"))).lines, IsEmpty());
    const RuleRun run = check(validator, metaOf(packageWith({kBinary})));
    EXPECT_THAT(run.lines,
                ElementsAre(errorLine(
                    "[binary] Main binary must not exist. Desktop file uses lumbra-qml")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
    EXPECT_TRUE(validator.unwantedBinExists());
}

class SealwatchdFile : public testing::Test {
protected:
    RuleRun checkWith(const std::string& content,
                      const std::string& path = "/etc/sealwatchd/config.d/app.json") {
        const UnpackedPackage package(
            PackageBuilder("app").file(kBinary, "", "0755").file(path, content));
        return check(validator_, package.meta(), {}, package.root());
    }

    ContentValidator validator_ = validatorOfNothing();
};

TEST_F(SealwatchdFile, MatchingFilePasses) {
    EXPECT_THAT(checkWith(R"({"watch": ["elf:/usr/bin/app", "/usr/bin/app"]})").lines, IsEmpty());
    EXPECT_TRUE(validator_.correctSealwatchd());
}

TEST_F(SealwatchdFile, MismatchIsOneLine) {
    const RuleRun run = checkWith(R"({"watch": ["file:/usr/bin/other", "/x", "/y"]})");
    EXPECT_THAT(run.lines, ElementsAre(errorLine("[sealwatchd] sealwatchd configuration file "
                                                 "mismatching package content")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
    EXPECT_FALSE(validator_.correctSealwatchd());
}

TEST_F(SealwatchdFile, InvalidJsonIsOneLine) {
    const RuleRun run = checkWith("{");
    EXPECT_THAT(
        run.lines,
        ElementsAre(errorLine("[sealwatchd] sealwatchd configuration file contains invalid JSON")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
    EXPECT_FALSE(validator_.correctSealwatchd());
}

// The file that is read bears the package's name, whichever path led to it, each path anew.
TEST_F(SealwatchdFile, FileIsNamedForThePackage) {
    const std::string line =
        errorLine("[sealwatchd] sealwatchd configuration file contains invalid JSON");
    EXPECT_THAT(checkWith(R"({"watch": []})", "/opt/etc/sealwatchd/config.d/app.json.git").lines,
                ElementsAre(line));
    EXPECT_THAT(check(validator_, metaOf(packageWith({kBinary, "/etc/sealwatchd/config.d/app.json",
                                                      "/etc/sealwatchd/config.d/app.jsonx"})))
                    .lines,
                ElementsAre(line, line));
}

TEST_F(SealwatchdFile, FileOfAnotherPackageIsOutOfPlace) {
    EXPECT_THAT(checkWith("{", "/etc/sealwatchd/config.d/other.json").lines,
                ElementsAre(notAllowed("/etc/sealwatchd/config.d/other.json")));
    EXPECT_TRUE(validator_.correctSealwatchd());
}

}  // namespace
