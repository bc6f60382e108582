// The life of a ContentValidator, its verdict, and the rules of its frame.
#include "pkgvet/content/content_validator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <utility>

#include "pkgvet/package/rpm_meta.h"
#include "tests/support/captured_log.h"
#include "tests/support/child_process.h"
#include "tests/support/package_builder.h"
#include "tests/support/rule_tree.h"
#include "tests/support/validator_record.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kMissing = "/nonexistent.rpm";

// A package on disk together with its header.
class Package {
public:
    explicit Package(const PackageBuilder& builder)
        : path_(builder.build(directory_)), meta_(path_.c_str()) {}

    const std::string& path() const { return path_; }
    const RpmMeta& meta() const { return meta_; }

    // The tools of the extraction talk to standard error.
    std::unique_ptr<ContentValidator> unpack() const {
        const CapturedDescriptor standardError;
        return std::make_unique<ContentValidator>(path_);
    }

private:
    TemporaryDirectory directory_;
    std::string path_;
    RpmMeta meta_;
};

PackageBuilder sample() {
    return PackageBuilder("org.example.app").file("/usr/share/org.example.app/data", "content");
}

long linesWith(const CapturedLog& log, const std::string& line) {
    const std::vector<std::string> lines = log.lines();
    return std::count(lines.begin(), lines.end(), line);
}

TEST(ContentValidator, UnpacksIntoADirectoryOfItsOwn) {
    const Package package(sample());
    const auto one = package.unpack();
    const auto two = package.unpack();
    const std::string& root = recordOf(*one).tempDir;
    EXPECT_TRUE(one->extracted());
    EXPECT_THAT(root, testing::MatchesRegex("/tmp/dir\\.[A-Za-z0-9]{6}"));
    EXPECT_NE(root, recordOf(*two).tempDir);
    EXPECT_EQ(readFile(root + "/usr/share/org.example.app/data"), "content");
    EXPECT_EQ(fs::status(root).permissions(), fs::perms::owner_all);
}

TEST(ContentValidator, DestructionRemovesTheTree) {
    const Package package(sample().link("/usr/share/link", "/etc").directory("/usr/share/empty"));
    auto validator = package.unpack();
    const std::string root = recordOf(*validator).tempDir;
    EXPECT_TRUE(fs::exists(root + "/usr/share/link/passwd"));
    validator.reset();
    EXPECT_FALSE(fs::exists(root));
    EXPECT_TRUE(fs::exists("/etc/passwd"));
}

TEST(ContentValidator, OrdinaryUserRemovesDirectoriesThatForbidIt) {
    TemporaryDirectory directory;
    fs::permissions(directory.path(), fs::perms::all);
    const std::string path = sample()
                                 .directory("/usr/share/closed", "0000")
                                 .directory("/usr/share/fixed", "0555")
                                 .file("/usr/share/fixed/file", "x")
                                 .directory("/usr/share/fixed/deep", "0111")
                                 .file("/usr/share/fixed/deep/file", "x", "0000")
                                 .build(directory);
    const CapturedDescriptor standardError;
    EXPECT_TRUE(holdsForOrdinaryUser([&path] {
        auto validator = std::make_unique<ContentValidator>(path);
        const std::string root = recordOf(*validator).tempDir;
        const bool extracted = validator->extracted() && fs::exists(root + "/usr/share/fixed");
        validator.reset();
        return extracted && !fs::exists(root);
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
    EXPECT_EQ(recordOf(validator).failures, 0U);
    EXPECT_EQ(log.text(), "");
}

TEST(ContentValidator, CopySharesTheTreeByName) {
    const Package package(sample());
    const auto source = package.unpack();
    recordOf(*source).failures = 2;
    recordOf(*source).desktopFacts.organizationName = "org.example";
    recordOf(*source).desktopFacts.backgroundTaskGroups = {"X-Task one"};
    const std::string root = recordOf(*source).tempDir;
    {
        ContentValidator copy(*source);
        EXPECT_EQ(recordOf(copy).tempDir, root);
        EXPECT_EQ(recordOf(copy).failures, 2U);
        EXPECT_EQ(recordOf(copy).desktopFacts.organizationName, "org.example");
        EXPECT_EQ(recordOf(copy).desktopFacts.backgroundTaskGroups.size(), 1U);
        recordOf(copy).desktopFacts.qmlOnly = true;
        EXPECT_FALSE(source->qmlOnly());
        EXPECT_TRUE(fs::exists(root));
    }
    EXPECT_FALSE(fs::exists(root));
    EXPECT_TRUE(source->extracted()) << "the name stays";
}

TEST(ContentValidator, MoveAssignmentExchangesTheTrees) {
    const Package package(sample());
    auto one = package.unpack();
    auto two = package.unpack();
    const std::string rootOfOne = recordOf(*one).tempDir;
    const std::string rootOfTwo = recordOf(*two).tempDir;
    *one = std::move(*two);
    EXPECT_EQ(recordOf(*one).tempDir, rootOfTwo);
    ContentValidator& self = *one;
    *one = std::move(self);
    EXPECT_EQ(recordOf(*one).tempDir, rootOfTwo);
    two.reset();
    EXPECT_FALSE(fs::exists(rootOfOne));
    EXPECT_TRUE(fs::exists(rootOfTwo));
    one.reset();
    EXPECT_FALSE(fs::exists(rootOfTwo));
}

TEST(ContentValidator, VerdictFollowsTheFailures) {
    const Package package(PackageBuilder("org.example.app"));
    const Configuration rules = load(RuleTree());
    const CapturedLog log;
    const auto verdict = [&](std::uint32_t failures, bool enabled) {
        const auto validator = package.unpack();
        recordOf(*validator).failures = failures;
        rules.setValidationEnabled(enabled);
        return validator->validateContent(rules, package.meta());
    };
    EXPECT_FALSE(verdict(1, true));
    EXPECT_FALSE(verdict(2, true));
    EXPECT_TRUE(verdict(0, false));
    EXPECT_TRUE(verdict(1, false));
    EXPECT_FALSE(verdict(2, false));
    EXPECT_FALSE(verdict(3, false));
}

TEST(ContentValidator, ConstOverloadHasTheSameEffects) {
    const Package package(PackageBuilder("org.example.app").native());
    const Configuration rules = load(RuleTree());
    const auto validator = package.unpack();
    recordOf(*validator).desktopFacts.qmlOnly = true;
    recordOf(*validator).failures = 2;
    const CapturedLog log;
    EXPECT_FALSE(std::as_const(*validator).validateContent(rules, package.meta()));
    EXPECT_EQ(linesWith(log, warningLine("[arch] QML-only RPMs should be noarch")), 1);
}

TEST(ContentValidator, SecondRunRepeatsTheLinesAndStaysFailed) {
    const Package package(PackageBuilder("org.example.app").native());
    const Configuration rules = load(RuleTree());
    const auto validator = package.unpack();
    recordOf(*validator).desktopFacts.qmlOnly = true;
    recordOf(*validator).failures = 1;
    const CapturedLog log;
    EXPECT_FALSE(validator->validateContent(rules, package.meta()));
    EXPECT_FALSE(validator->validateContent(rules, package.meta()));
    EXPECT_EQ(linesWith(log, warningLine("[arch] QML-only RPMs should be noarch")), 2);
}

TEST(CheckArch, WarnsOfQmlOnlyPackagesForOneArchitecture) {
    const Package noarch(PackageBuilder("org.example.app"));
    const Package native(PackageBuilder("org.example.app").native());
    const RpmMeta unread(kMissing);
    struct Case {
        const char* name;
        const RpmMeta& meta;
        bool qmlOnly;
        bool archSpecificContent;
        bool warned;
    };
    const Case cases[] = {
        {"noarch", noarch.meta(), true, false, false},
        {"native", native.meta(), true, false, true},
        {"native with an executable", native.meta(), true, true, false},
        {"native with a binary", native.meta(), false, false, false},
        {"no architecture", unread, true, false, true},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        ContentValidator validator(kMissing);
        recordOf(validator).desktopFacts.qmlOnly = test.qmlOnly;
        recordOf(validator).binaryFacts.archSpecificContent = test.archSpecificContent;
        const CapturedLog log;
        validator.checkArch(test.meta);
        EXPECT_EQ(log.text(),
                  test.warned ? warningLine("[arch] QML-only RPMs should be noarch\n") : "");
        EXPECT_EQ(recordOf(validator).failures, 0U);
        EXPECT_FALSE(validator.arch());
    }
}

}  // namespace
