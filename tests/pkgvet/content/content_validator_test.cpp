// The life of a ContentValidator, its verdict, and the rules of its frame.
#include "pkgvet/content/content_validator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <utility>

#include "pkgvet/package/rpm_meta.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/child_process.h"
#include "tests/support/base/extracted_trees.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/rules/desktop_file.h"
#include "tests/support/rules/rule_tree.h"

namespace {

// The header of a package that is called kPackage and holds its desktop file alone. Built once.
const RpmMeta& packageHeader() {
    static const RpmMeta header = [] {
        const TemporaryDirectory directory;
        const std::string path = std::string("/usr/share/applications/") + kPackage + ".desktop";
        return RpmMeta(PackageBuilder(kPackage).file(path, "").build(directory).c_str());
    }();
    return header;
}

namespace fs = std::filesystem;

using Strings = std::vector<std::string>;

constexpr const char* kMissing = "/nonexistent.rpm";
constexpr const char* kDesktopPath = "/usr/share/applications/org.example.app.desktop";
constexpr const char* kMarkerDirectory = "/usr/share/org.example.app/";

// A package on disk together with its header. It holds a file that no other package has, by which
// its tree is found.
class Package {
public:
    explicit Package(PackageBuilder builder)
        : marker_(kMarkerDirectory + directory_.path().filename().string()),
          path_(builder.file(marker_, "content").build(directory_)),
          meta_(path_.c_str()) {}

    const std::string& marker() const { return marker_; }
    const std::string& path() const { return path_; }
    const RpmMeta& meta() const { return meta_; }
    Strings trees() const { return extractedTreesWith(marker_); }

    // The tools of the extraction write to standard error.
    std::unique_ptr<ContentValidator> unpack() const {
        const CapturedDescriptor standardError;
        return std::make_unique<ContentValidator>(path_);
    }

private:
    TemporaryDirectory directory_;
    std::string marker_;
    std::string path_;
    RpmMeta meta_;
};

PackageBuilder sample() {
    return PackageBuilder(kPackage);
}

// A package that is accepted with warnings at most. It needs no binary, being in QML alone.
PackageBuilder goodPackage() {
    return sample()
        .tag("Requires: libtessaraapp-launcher")
        .file(kDesktopPath,
              "[Desktop Entry]\nType=Application\nName=App\nIcon=org.example.app\n"
              "Exec=lumbra-qml org.example.app\nX-Dorrit-Application-Type=ostrand-qt5\n"
              "[X-Application]\nOrganizationName=org.example\nApplicationName=app\n");
}

// A rule is violated: nothing is known of a desktop file yet, and so the main binary is missing.
void violateARule(ContentValidator& validator) {
    validator.checkExcludedPaths(load(RuleTree()), RpmMeta(kMissing), "");
}

// Another finding alone, which rejects in any case.
void findASpecialBit(ContentValidator& validator) {
    const TemporaryDirectory root;
    const std::string file = root.write(kDesktopPath + 1, "");
    ASSERT_EQ(chmod(file.c_str(), 04644), 0);
    validator.processPermissions(load(RuleTree()), packageHeader(), root.path());
}

Strings linesOf(const std::function<void()>& rule) {
    const CapturedLog log;
    rule();
    return log.lines();
}

long linesWith(const CapturedLog& log, const std::string& line) {
    const Strings lines = log.lines();
    return std::count(lines.begin(), lines.end(), line);
}

TEST(ContentValidator, UnpacksIntoADirectoryOfItsOwn) {
    const Package package(sample());
    const auto one = package.unpack();
    const auto two = package.unpack();
    EXPECT_TRUE(one->extracted());
    const Strings trees = package.trees();
    ASSERT_EQ(trees.size(), 2U);
    EXPECT_THAT(trees[0], testing::MatchesRegex("/tmp/dir\\.[A-Za-z0-9]{6}"));
    EXPECT_EQ(readFile(trees[0] + package.marker()), "content");
    EXPECT_EQ(fs::status(trees[0]).permissions(), fs::perms::owner_all);
}

TEST(ContentValidator, DestructionRemovesTheTree) {
    const Package package(sample().link("/usr/share/link", "/etc").directory("/usr/share/empty"));
    auto validator = package.unpack();
    const Strings trees = package.trees();
    ASSERT_EQ(trees.size(), 1U);
    EXPECT_TRUE(fs::exists(trees[0] + "/usr/share/link/passwd"));
    validator.reset();
    EXPECT_FALSE(fs::exists(trees[0]));
    EXPECT_TRUE(fs::exists("/etc/passwd"));
}

TEST(ContentValidator, OrdinaryUserRemovesDirectoriesThatForbidIt) {
    TemporaryDirectory directory;
    fs::permissions(directory.path(), fs::perms::all);
    const std::string marker = kMarkerDirectory + directory.path().filename().string();
    const std::string path = sample()
                                 .file(marker, "")
                                 .directory("/usr/share/closed", "0000")
                                 .directory("/usr/share/fixed", "0555")
                                 .file("/usr/share/fixed/file", "x")
                                 .directory("/usr/share/fixed/deep", "0111")
                                 .file("/usr/share/fixed/deep/file", "x", "0000")
                                 .build(directory);
    const CapturedDescriptor standardError;
    EXPECT_TRUE(holdsForOrdinaryUser([&] {
        auto validator = std::make_unique<ContentValidator>(path);
        const Strings trees = extractedTreesWith(marker);
        const bool extracted = trees.size() == 1 && fs::exists(trees[0] + "/usr/share/fixed");
        validator.reset();
        return extracted && !fs::exists(trees[0]);
    })) << standardError.text();
}

TEST(ContentValidator, NothingIsRemovedWhereNothingWasUnpacked) {
    const TemporaryDirectory directory;
    directory.write("file", "x");
    const fs::path former = fs::current_path();
    fs::current_path(directory.path());
    {
        const ContentValidator validator(kMissing);
        EXPECT_FALSE(validator.extracted());
    }
    fs::current_path(former);
    EXPECT_TRUE(fs::exists(directory / "file"));
}

TEST(ContentValidator, WithoutATemporaryDirectoryNothingIsUnpacked) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only the superuser may change the root directory";
    }
    const TemporaryDirectory directory;
    EXPECT_TRUE(holdsInChild([&directory] {
        if (chroot(directory.path().c_str()) != 0 || chdir("/") != 0) {
            return false;
        }
        return !ContentValidator("package.rpm").extracted();
    }));
}

TEST(ContentValidator, ConstructionWithRulesRunsNone) {
    const Package package(sample());
    const CapturedLog log;
    const CapturedDescriptor standardError;
    ContentValidator validator(load(RuleTree()), package.meta(), package.path());
    EXPECT_TRUE(validator.extracted());
    EXPECT_TRUE(validator.binRequired());
    EXPECT_EQ(log.text(), "");
}

TEST(ContentValidator, CopySharesTheTreeByName) {
    const Package package(sample());
    const auto source = package.unpack();
    {
        const ContentValidator copy(*source);
        EXPECT_TRUE(copy.extracted());
        EXPECT_EQ(package.trees().size(), 1U);
    }
    EXPECT_EQ(package.trees().size(), 0U);
    EXPECT_TRUE(source->extracted()) << "the name stays";
}

// Of the texts and lists that rules pass on, some findings hang on each.
TEST(ContentValidator, CopyKnowsWhatTheSourceFound) {
    const DesktopEntry entry =
        desktopEntry(std::string(kGoodEntry) + kGoodSection + "[X-Task one]\nType=worker\n" +
                     "Permissions=Location\n");
    const Configuration rules = load(RuleTree());
    const CapturedLog log;
    ContentValidator source{std::string()};
    source.processDesktopFile(packageHeader(), entry);
    source.processPinfold(rules, packageHeader(), entry, "");
    findASpecialBit(source);
    const auto tasks = [&](ContentValidator& validator) {
        return linesOf([&] { validator.processBackgroundTasks(packageHeader(), entry); });
    };
    const Package shared(
        sample().ghost("/usr/bin/org.example.app").ghost("/usr/share/common/org.example/app/x"));
    ContentValidator copy(source);
    EXPECT_EQ(tasks(copy),
              Strings{errorLine("Task permission needs to be in application too: Location")});
    EXPECT_EQ(tasks(copy), tasks(source));
    EXPECT_EQ(linesOf([&] { copy.checkExcludedPaths(rules, shared.meta(), ""); }), Strings());
    EXPECT_TRUE(copy.desktopName());
    EXPECT_TRUE(copy.unwantedBinExists());
    EXPECT_FALSE(source.unwantedBinExists()) << "what the copy finds is its own";
    rules.setValidationEnabled(false);
    EXPECT_FALSE(copy.validateContent(rules, RpmMeta(kMissing)));
}

TEST(ContentValidator, MoveAssignmentExchangesTheTrees) {
    const Package first(sample());
    const Package second(sample());
    auto one = first.unpack();
    auto two = second.unpack();
    *one = std::move(*two);
    ContentValidator& self = *one;
    *one = std::move(self);
    EXPECT_TRUE(one->extracted());
    two.reset();
    EXPECT_EQ(first.trees().size(), 0U);
    EXPECT_EQ(second.trees().size(), 1U);
    one.reset();
    EXPECT_EQ(second.trees().size(), 0U);
}

TEST(ContentValidator, MoveAssignmentExchangesWhatWasFound) {
    const CapturedLog log;
    ContentValidator one(kMissing);
    ContentValidator two(kMissing);
    one.processDesktopFile(packageHeader(), desktopEntry("[Desktop Entry]\nName=App\n"));
    two = std::move(one);
    EXPECT_TRUE(two.desktopName());
    EXPECT_FALSE(one.desktopName());  // NOLINT(bugprone-use-after-move)
}

class Verdict : public testing::Test {
protected:
    Verdict() { tree_.regular().requires_.allowed = {"libtessaraapp-launcher"}; }

    bool verdict(ContentValidator& validator, bool enabled) {
        const Configuration rules = load(tree_);
        rules.setValidationEnabled(enabled);
        return validator.validateContent(rules, package_.meta());
    }

    static constexpr const char* kArchWarning = "[arch] QML-only RPMs should be noarch";

    RuleTree tree_;
    const Package package_{goodPackage().native()};
    const CapturedLog log_;
};

TEST_F(Verdict, FollowsTheFailures) {
    struct Case {
        bool isViolated;
        bool hasSpecialBit;
        bool isEnabled;
        bool isAccepted;
    };
    for (const Case& test : {
             Case{false, false, true, true},
             Case{true, false, true, false},
             Case{false, true, true, false},
             Case{true, true, true, false},
             Case{false, false, false, true},
             Case{true, false, false, true},
             Case{false, true, false, false},
             Case{true, true, false, false},
         }) {
        SCOPED_TRACE(testing::Message() << test.isViolated << test.hasSpecialBit << test.isEnabled);
        const auto validator = package_.unpack();
        if (test.isViolated) {
            violateARule(*validator);
        }
        if (test.hasSpecialBit) {
            findASpecialBit(*validator);
        }
        EXPECT_EQ(verdict(*validator, test.isEnabled), test.isAccepted);
    }
}

TEST_F(Verdict, WarningsDoNotReject) {
    const auto validator = package_.unpack();
    EXPECT_TRUE(verdict(*validator, true));
    EXPECT_EQ(linesWith(log_, warningLine(kArchWarning)), 1);
}

TEST_F(Verdict, ConstOverloadHasTheSameEffects) {
    const auto validator = package_.unpack();
    violateARule(*validator);
    EXPECT_FALSE(std::as_const(*validator).validateContent(load(tree_), package_.meta()));
    EXPECT_EQ(linesWith(log_, warningLine(kArchWarning)), 1);
    EXPECT_TRUE(validator->desktop());
}

TEST_F(Verdict, SecondRunRepeatsTheLinesAndStaysFailed) {
    const auto validator = package_.unpack();
    EXPECT_TRUE(verdict(*validator, true));
    violateARule(*validator);
    findASpecialBit(*validator);
    EXPECT_FALSE(verdict(*validator, true));
    EXPECT_FALSE(verdict(*validator, false));
    EXPECT_EQ(linesWith(log_, warningLine(kArchWarning)), 3);
}

TEST_F(Verdict, WithoutADesktopFileItsRulesDoNotRun) {
    const Package package(sample().file("/usr/share/empty", ""));
    const auto validator = package.unpack();
    EXPECT_FALSE(validator->validateContent(load(tree_), package.meta()));
    EXPECT_FALSE(validator->isSandboxed() || validator->desktopName());
    EXPECT_TRUE(validator->correctDbus() && validator->correctOrgName());
    EXPECT_EQ(linesWith(log_, errorLine("[binary] Main binary must exist, but it is not found")),
              1);
}

// Its paths then lead to this machine.
TEST_F(Verdict, RulesRunOnAPackageThatWasNotUnpacked) {
    const Package package(sample().link("/etc/passwd", "x").ghost("/nonexistent/file"));
    ContentValidator validator(kMissing);
    EXPECT_FALSE(validator.validateContent(load(tree_), package.meta()));
    EXPECT_EQ(linesWith(log_, errorLine("[/nonexistent/file] Failed to read file attributes")), 1);
    EXPECT_EQ(linesWith(log_, errorLine("[/etc/passwd] Failed to read file attributes")), 0);
}

}  // namespace
