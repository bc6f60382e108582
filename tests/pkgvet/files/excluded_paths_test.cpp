// Where a package may install its files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <stdexcept>

#include "pkgvet/files/file_rules.h"
#include "pkgvet/rules/configuration.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/elf/elf_image.h"
#include "tests/support/rules/rule_run.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using pkgvet::Application;
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

// One run of the rule on a package that holds nothing but its main binary, and what it left behind.
class ExcludedPaths : public testing::Test {
protected:
    RuleRun check() {
        const Configuration configuration = load(tree_);
        return runRule([&](pkgvet::Findings* findings) {
            pkgvet::checkExcludedPaths(name_, paths_, application_, configuration, root_.path(),
                                       &facts_, findings);
        });
    }

    RuleRun check(const std::vector<std::string>& paths) {
        paths_ = paths;
        return check();
    }

    struct Case {
        const char* path;
        std::vector<std::string> lines;
    };

    // One package for all rows.
    void expectLines(const std::vector<Case>& cases) {
        std::vector<std::string> expected;
        for (const Case& test : cases) {
            paths_.emplace_back(test.path);
            expected.insert(expected.end(), test.lines.begin(), test.lines.end());
        }
        EXPECT_EQ(check().lines, expected);
    }

    std::string name_ = "app";
    std::vector<std::string> paths_ = {kBinary};
    Application application_;
    RuleTree tree_;
    TemporaryDirectory root_;
    pkgvet::FileFacts facts_;
};

TEST_F(ExcludedPaths, PackagesOwnPlacesAreAllowed) {
    expectLines({
        {"/usr/share/app/qml/main.qml", {}},
        {"/usr/share/app/data.git", {}},  // the suffix is not looked at here
        {"/usr/share/icons/hicolor/86x86/apps/other.png", {}},
        {"/usr/share/other/x", {notAllowed("/usr/share/other/x")}},
    });
}

TEST_F(ExcludedPaths, DesktopFileBearsThePackagesName) {
    name_ = "pilot";
    paths_ = {"/usr/bin/pilot"};
    expectLines({
        {"/usr/share/applications/pilot.desktop", {}},
        {"/usr/share/applications/copilot.desktop",
         {notAllowed("/usr/share/applications/copilot.desktop")}},
        {"/usr/share/applications/pilotxdesktop",
         {notAllowed("/usr/share/applications/pilotxdesktop")}},
    });
}

TEST_F(ExcludedPaths, PatternsAreNotAnchored) {
    expectLines({
        {"/usr/share/appendix/x", {}},
        {"/home/usr/share/app", {}},
        {"/opt/usr/share/icons/hicolor/x", {}},
        {"/usr/share/applications/other.desktop", {}},
        {"/opt/usr/libexec/application", {}},
    });
}

TEST_F(ExcludedPaths, SharedPlaceWithoutOrganisation) {
    expectLines({
        {"/usr/share/common", {notAllowed("/usr/share/common")}},
        {"/usr/share/common/", {}},
        {"/usr/share/common//x", {}},
        {"/usr/share/common/x", {notAllowed("/usr/share/common/x")}},
        {"/opt/usr/share/common/", {notAllowed("/opt/usr/share/common/")}},
        {"/opt/usr/share/common//x", {}},
    });
}

TEST_F(ExcludedPaths, SharedPlaceIsThatOfOrganisationAndApplication) {
    application_ = {false, "com.example", "App"};
    expectLines({
        {"/usr/share/common/com.example", {}},
        {"/usr/share/common/com.example/", {}},
        {"/usr/share/common/com.example/App", {}},
        {"/usr/share/common/com.example/App/x", {}},
        {"/usr/share/common/com.example/Other/x", {}},
        {"/usr/share/common/com.exampleX", {notAllowed("/usr/share/common/com.exampleX")}},
        {"/usr/share/common/comXexample", {notAllowed("/usr/share/common/comXexample")}},
    });
}

// The "." and the "+" of a name count as such.
TEST_F(ExcludedPaths, NameIsEscaped) {
    name_ = "org.ex+ample";
    paths_ = {"/usr/bin/org.ex+ample"};
    expectLines({
        {"/usr/share/org.ex+ample/x", {}},
        {"/usr/share/orgxex+ample/x", {notAllowed("/usr/share/orgxex+ample/x")}},
        {"/usr/share/org.exxample/x", {notAllowed("/usr/share/org.exxample/x")}},
    });
}

TEST_F(ExcludedPaths, ThirdPartyLibrariesHaveToBeListed) {
    tree_.regular().paths = {"/usr/lib/3rdparty/app/a/.*"};
    expectLines({
        {"/usr/lib/3rdparty/app/a/x.git", {}},
        {"/usr/lib/3rdparty/app/b/x", {notAllowed("/usr/lib/3rdparty/app/b/x")}},
        {"/usr/lib/3rdparty/app/b/x.git", {extensionNotAllowed("/usr/lib/3rdparty/app/b/x.git")}},
    });
}

TEST_F(ExcludedPaths, ListedPathsAreWholePatterns) {
    tree_.regular().paths = {"/opt/[ab]/.*", "/srv/x"};
    expectLines({
        {"/opt/a/x", {}},
        {"/opt/c/x", {notAllowed("/opt/c/x")}},
        {"/srv/x", {}},
        {"/srv/xy", {notAllowed("/srv/xy")}},
        {"/x/opt/a/x", {notAllowed("/x/opt/a/x")}},
    });
}

TEST_F(ExcludedPaths, ForbiddenSuffixIsRejectedEvenIfListed) {
    tree_.regular().paths = {"/opt/.*"};
    expectLines({{"/opt/app/data.git", {extensionNotAllowed("/opt/app/data.git")}},
                 {"/opt/app/.git/config", {}},
                 {"/opt/app/.swp", {extensionNotAllowed("/opt/app/.swp")}},
                 {"/srv/data.svn", {extensionNotAllowed("/srv/data.svn")}}});
}

TEST(BlacklistedExtension, SuffixesAreComparedByByte) {
    for (const char* path :
         {"x.git", ".git", "/a/.svn", "foo.hg", "x.bzr", "x.cvs", "a/.DS_Store", "x.swp"}) {
        EXPECT_TRUE(pkgvet::isBlacklistedExtension(path)) << path;
    }
    for (const char* path : {"", "git", "/.git/config", "x.GIT", ".ds_store", "x.gitx", "x.git/"}) {
        EXPECT_FALSE(pkgvet::isBlacklistedExtension(path)) << path;
    }
}

TEST_F(ExcludedPaths, SystemsBinDirectoryIsNotOwned) {
    const std::string line =
        errorLine("[/usr/bin] Direct package ownership of /usr/bin is disallowed");
    const RuleRun run = check({kBinary, "/usr/bin", "/usr/bin/"});
    EXPECT_THAT(run.lines, ElementsAre(line, line));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
    EXPECT_TRUE(facts_.binDirOwned);
}

TEST_F(ExcludedPaths, OtherBinariesHaveToBeListed) {
    expectLines({{"/usr/bin/helper", {notAllowed("/usr/bin/helper")}},
                 {"/usr/bin/app2", {notAllowed("/usr/bin/app2")}}});
}

TEST_F(ExcludedPaths, LibexecFilesOfThePackageAreAllowedUnseen) {
    tree_.libexecDir = "/opt/lib+exec/";
    expectLines({{"/opt/lib+exec/app/script", {}},
                 {"/opt/lib+exec/app2", {}},
                 {"/opt/lib+exec/other", {notAllowed("/opt/lib+exec/other")}},
                 {"/usr/libexec/app/x", {notAllowed("/usr/libexec/app/x")}}});
}

// The first of the two patterns on helper programs is then empty and matches nothing, and the
// second one matches every path.
TEST_F(ExcludedPaths, WithoutANameAndADirectoryEveryFileIsAHelperProgram) {
    name_ = "";
    tree_.libexecDir = "";
    root_.write("opt/little", elfImage("elf 64 little"));
    root_.write("opt/big", elfImage("elf 32 big"));
    root_.write("opt/text", "text");
    std::filesystem::create_directory(root_ / "opt/directory");
    paths_ = {"/usr/bin/"};
    const std::string end = ": bad executable format";
    expectLines({
        {"/opt/little", {}},
        {"/opt/big", {notAllowed("/opt/big") + end}},
        {"/opt/text", {notAllowed("/opt/text") + end}},
        {"/opt/missing", {notAllowed("/opt/missing") + end}},
        {"/opt/directory", {}},
        {"/usr/lib/debug/x", {notAllowed("/usr/lib/debug/x") + end}},
        {"no slash", {notAllowed("no slash")}},
    });
    EXPECT_FALSE(facts_.debugDir);
}

TEST_F(ExcludedPaths, DebugFilesAreReportedWhetherListedOrNot) {
    tree_.regular().paths = {"/usr/lib/debug/.*"};
    const RuleRun run = check({kBinary, "/usr/lib/debug/x", "/usr/src/debug/x"});
    EXPECT_THAT(run.lines, ElementsAre(debugLine(), debugLine(), notAllowed("/usr/src/debug/x")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
    EXPECT_TRUE(facts_.debugDir);
}

TEST_F(ExcludedPaths, ListedDebugFileStillRejects) {
    tree_.regular().paths = {"/usr/lib/debug/.*"};
    const RuleRun run = check({kBinary, "/usr/lib/debug/x"});
    EXPECT_THAT(run.lines, ElementsAre(debugLine()));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST_F(ExcludedPaths, MainBinaryIsWanted) {
    EXPECT_TRUE(pkgvet::isBinaryRequired(false, facts_));
    EXPECT_THAT(check().lines, IsEmpty());
    EXPECT_TRUE(facts_.unwantedBinExists);
    EXPECT_FALSE(pkgvet::isBinaryRequired(false, facts_));
}

TEST_F(ExcludedPaths, MissingMainBinaryIsOneLineAtTheEnd) {
    EXPECT_THAT(check({}).lines, ElementsAre(missingBinary()));
    const RuleRun run = check({"/opt/x", "/usr/bin/other"});
    EXPECT_THAT(run.lines,
                ElementsAre(notAllowed("/opt/x"), notAllowed("/usr/bin/other"), missingBinary()));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST_F(ExcludedPaths, BinaryOnceSeenStaysSeen) {
    check();
    EXPECT_THAT(check({}).lines, IsEmpty());
}

TEST_F(ExcludedPaths, BinaryDirectoryIsThatOfTheRuleSet) {
    tree_.binDir = "/opt/bin-";
    EXPECT_THAT(check({kBinary}).lines, ElementsAre(notAllowed(kBinary), missingBinary()));
    EXPECT_THAT(check({"/opt/bin-app"}).lines, IsEmpty());
}

TEST_F(ExcludedPaths, BadPatternThrowsWhenAPathGetsToIt) {
    tree_.regular().paths = {"/opt/x", "("};
    EXPECT_NO_THROW(check({kBinary, "/usr/share/app/x", "/opt/x"}));
    EXPECT_THROW(check({kBinary, "/opt/y"}), std::regex_error);
}

TEST_F(ExcludedPaths, QmlOnlyPackageHasNoBinary) {
    application_.isQmlOnly = true;
    EXPECT_THAT(check({}).lines, IsEmpty());
    const RuleRun run = check({kBinary});
    EXPECT_THAT(run.lines,
                ElementsAre(errorLine(
                    "[binary] Main binary must not exist. Desktop file uses lumbra-qml")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
    EXPECT_TRUE(facts_.unwantedBinExists);
}

// The steps on the package's configuration of the file integrity service.
class SealwatchdFile : public ExcludedPaths {
protected:
    RuleRun checkWith(const std::string& content,
                      const std::string& path = "/etc/sealwatchd/config.d/app.json") {
        root_.write(path.substr(1), content);
        return check({kBinary, path});
    }

    const std::string invalidJson_ =
        errorLine("[sealwatchd] sealwatchd configuration file contains invalid JSON");
};

TEST_F(SealwatchdFile, MatchingFilePasses) {
    EXPECT_THAT(checkWith(R"({"watch": ["elf:/usr/bin/app", "/usr/bin/app"]})").lines, IsEmpty());
    EXPECT_TRUE(facts_.correctSealwatchd);
}

TEST_F(SealwatchdFile, MismatchIsOneLine) {
    const RuleRun run = checkWith(R"({"watch": ["file:/usr/bin/other", "/x", "/y"]})");
    EXPECT_THAT(run.lines, ElementsAre(errorLine("[sealwatchd] sealwatchd configuration file "
                                                 "mismatching package content")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
    EXPECT_FALSE(facts_.correctSealwatchd);
}

TEST_F(SealwatchdFile, InvalidJsonIsOneLine) {
    const RuleRun run = checkWith("{");
    EXPECT_THAT(run.lines, ElementsAre(invalidJson_));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
    EXPECT_FALSE(facts_.correctSealwatchd);
}

TEST_F(SealwatchdFile, ElementThatIsNotTextThrows) {
    EXPECT_THROW(checkWith(R"({"watch": [null]})"), std::logic_error);
    EXPECT_TRUE(facts_.correctSealwatchd);
}

// The file that is read bears the package's name, whichever path led to it.
TEST_F(SealwatchdFile, FileIsNamedForThePackage) {
    EXPECT_THAT(checkWith(R"({"watch": []})", "/opt/etc/sealwatchd/config.d/app.json.git").lines,
                ElementsAre(invalidJson_));
    EXPECT_THAT(
        check({kBinary, "/etc/sealwatchd/config.d/app.json", "/etc/sealwatchd/config.d/app.jsonx"})
            .lines,
        ElementsAre(invalidJson_, invalidJson_));
}

TEST_F(SealwatchdFile, FileOfAnotherPackageIsOutOfPlace) {
    EXPECT_THAT(checkWith("{", "/etc/sealwatchd/config.d/other.json").lines,
                ElementsAre(notAllowed("/etc/sealwatchd/config.d/other.json")));
    EXPECT_TRUE(facts_.correctSealwatchd);
}

}  // namespace
