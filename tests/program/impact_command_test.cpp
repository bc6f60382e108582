// `pkgvet impact` on packages and trees.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/package/accepted_package.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/program/program.h"

namespace {

using testing::HasSubstr;

class ImpactCommand : public testing::Test {
protected:
    static void SetUpTestSuite() {
        shared_ = new TemporaryDirectory;
        before_ = new TemporaryDirectory;
        after_ = new TemporaryDirectory;
        acceptingRules().write(*before_);
        RuleTree tree = acceptingRules();
        tree.regular().requires_.allowed = {};
        tree.write(*after_);
        shared_->write("a.rpm", acceptedPackage().bytes());
        PackageBuilder("org.example.other").build(*shared_);
    }

    static void TearDownTestSuite() {
        delete shared_;
        delete before_;
        delete after_;
    }

    static std::string before() { return *before_ / "configuration.json"; }
    static std::string after() { return *after_ / "configuration.json"; }
    static std::string package() { return *shared_ / "a.rpm"; }

    static ProgramResult impact(const std::string& from, const std::string& to,
                                const std::vector<std::string>& more) {
        std::vector<std::string> arguments = {"impact", "--validation", "on", "--old",
                                              from,     "--new",        to};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runPkgvet(arguments);
    }

    static inline TemporaryDirectory* shared_ = nullptr;
    static inline TemporaryDirectory* before_ = nullptr;
    static inline TemporaryDirectory* after_ = nullptr;
};

TEST_F(ImpactCommand, VerdictThatTurnsIsToldWithTheEntryThatTurnsIt) {
    const ProgramResult result = impact(before(), after(), {shared_->path()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, HasSubstr(package() + " (regular): accepted, now rejected\n"));
    EXPECT_THAT(result.output,
                HasSubstr("  error     dependency-not-allowed  1 finding in 1 package\n"));
    EXPECT_THAT(result.output,
                HasSubstr("because of " + *before_ / "profile-0/requires.json" + ":"));
    EXPECT_THAT(result.output,
                HasSubstr(": libtessaraapp-launcher removed from requires.allowed: 1 finding\n"));
}

// Under each tree it is what a check says.
TEST_F(ImpactCommand, SameTreeAndTheWayBack) {
    EXPECT_EQ(impact(before(), before(), {package()}).status, 0);
    const ProgramResult back = impact(after(), before(), {package()});
    EXPECT_EQ(back.status, 1);
    EXPECT_THAT(back.output, HasSubstr(package() + " (regular): rejected, now accepted\n"));
    EXPECT_THAT(back.output, HasSubstr("Findings that vanish: 1\n"));
}

TEST_F(ImpactCommand, EachProfileHasItsOwnPart) {
    const ProgramResult all = impact(before(), after(), {"--profile", "all", package()});
    EXPECT_THAT(all.output, HasSubstr("Verdicts that turn: 1\n"));
    EXPECT_EQ(impact(before(), after(), {"--profile", "mdm", package()}).status, 0);
}

TEST_F(ImpactCommand, OutputDoesNotDependOnTheNumberOfJobs) {
    const std::vector<std::string> one = {"-j", "1", "--format", "markdown", shared_->path()};
    const std::vector<std::string> two = {"-j", "2", "--format", "markdown", shared_->path()};
    EXPECT_EQ(impact(before(), after(), one).output, impact(before(), after(), two).output);
}

TEST_F(ImpactCommand, FilesHoldWhatStandardOutputWould) {
    const TemporaryDirectory files;
    std::vector<std::string> arguments;
    const std::vector<std::string> formats = {"json", "markdown", "html"};
    for (const std::string& format : formats) {
        arguments.insert(arguments.end(), {"-o", format + ":" + files / format});
    }
    arguments.push_back(shared_->path());
    const ProgramResult result = impact(before(), after(), arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, impact(before(), after(), {shared_->path()}).output);
    for (const std::string& format : formats) {
        EXPECT_EQ(readFile(files / format),
                  impact(before(), after(), {"--format", format, shared_->path()}).output)
            << format;
    }
}

TEST_F(ImpactCommand, FileThatCannotBeWrittenIsAnError) {
    EXPECT_EQ(impact(before(), after(), {"-o", "json:" + package(), package()}).status, 2);
    EXPECT_EQ(impact(before(), after(), {"-o", "json:" + before(), package()}).status, 2);
    EXPECT_EQ(impact(before(), after(), {"-o", "json:/nonexistent/x", package()}).status, 2);
}

TEST_F(ImpactCommand, TreesAndPackagesThatWereNotJudgedAreNamed) {
    const std::string none = *shared_ / "none.rpm";
    const std::string output = impact(before(), after(), {package(), none}).output;
    EXPECT_THAT(output, HasSubstr("Before: " + before() + "\nNow: " + after() + "\n"));
    EXPECT_THAT(output, HasSubstr("Packages not judged: 1\n  " + none + ": "));
    EXPECT_EQ(output.find("before: "), std::string::npos);
    const auto json = nlohmann::json::parse(
        impact(before(), after(), {"--format", "json", package(), none}).output);
    EXPECT_EQ(json["unjudged"][0]["path"], none);
    EXPECT_NE(json["before"]["profiles"][0]["rules_digest"],
              json["after"]["profiles"][0]["rules_digest"]);
}

TEST_F(ImpactCommand, FaultsOfBothTreesAreToldAndThoseOfASharedFileOnce) {
    const TemporaryDirectory other;
    const std::string broken = other.write("a.json", "{}");
    const std::string missing = other / "b.json";
    const ProgramResult both = impact(broken, missing, {package()});
    EXPECT_EQ(both.status, 2);
    EXPECT_THAT(both.errors, HasSubstr(broken));
    EXPECT_THAT(both.errors, HasSubstr(missing));
    EXPECT_EQ(impact(broken, broken, {package()}).errors,
              impact(before(), broken, {package()}).errors);
}

TEST_F(ImpactCommand, WhatCannotBeJudgedOrUsedHasItsStatus) {
    EXPECT_EQ(impact(before(), after(), {package(), *shared_ / "none.rpm"}).status, 3);
    EXPECT_EQ(impact(before(), *shared_ / "none.json", {package()}).status, 2);
    EXPECT_EQ(impact(before(), after(), {}).status, 2);
    EXPECT_EQ(impact(before(), after(), {before_->path()}).status, 2);
    EXPECT_EQ(impact(before(), after(), {"--allow-empty", before_->path()}).status, 0);
    EXPECT_EQ(runPkgvet({"impact", "--old", before(), package()}).status, 2);
    EXPECT_EQ(impact(before(), after(), {"-0", package()}).status, 2);
}

}  // namespace
