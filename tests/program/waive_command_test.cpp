// `pkgvet waive`: from a report to waivers that excuse what it found.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/package/package_builder.h"
#include "tests/support/program/program.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

class WaiveCommand : public testing::Test {
protected:
    static void SetUpTestSuite() {
        shared_ = new TemporaryDirectory;
        rules_ = new std::string(RuleTree().write(*shared_));
        package_ = new std::string(PackageBuilder("org.example.c++")
                                       .tag("Requires: strange(x86-64)")
                                       .file("/usr/share/org.example.c++/a[1].txt", "x")
                                       .build(*shared_));
        report_ =
            new std::string(shared_->write("report.json", check({"--format", "json"}).output));
    }

    static void TearDownTestSuite() {
        delete report_;
        delete package_;
        delete rules_;
        delete shared_;
    }

    static ProgramResult check(const std::vector<std::string>& arguments) {
        std::vector<std::string> line = {"check", "--validation", "on", "--rules", *rules_};
        line.insert(line.end(), arguments.begin(), arguments.end());
        line.push_back(*package_);
        return runPkgvet(line);
    }

    static ProgramResult waive(const std::vector<std::string>& arguments) {
        std::vector<std::string> line = {"waive", *report_};
        line.insert(line.end(), arguments.begin(), arguments.end());
        return runPkgvet(line);
    }

    const TemporaryDirectory own_;

private:
    static TemporaryDirectory* shared_;
    static std::string* rules_;
    static std::string* package_;
    static std::string* report_;
};

TemporaryDirectory* WaiveCommand::shared_ = nullptr;
std::string* WaiveCommand::rules_ = nullptr;
std::string* WaiveCommand::package_ = nullptr;
std::string* WaiveCommand::report_ = nullptr;

TEST_F(WaiveCommand, WaiversForAllThatCountsLetThePackagePass) {
    EXPECT_EQ(check({}).status, 1);
    const ProgramResult result = waive({"--reason", "agreed"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    const ProgramResult after =
        check({"--fail-on", "warning", "--waivers", own_.write("w.json", result.output)});
    EXPECT_EQ(after.status, 0) << after.output;
    EXPECT_EQ(after.errors, "");
}

TEST_F(WaiveCommand, RuleAndSubjectChoose) {
    const ProgramResult result =
        waive({"--rule", "dependency-not-allowed", "--subject", "strange(x86-64)", "--reason",
               "agreed", "--expires", "2999-12-31"});
    EXPECT_EQ(result.status, 0) << result.errors;
    const json waiver = {{"rule", "dependency-not-allowed"},
                         {"subject", "strange\\(x86-64\\)"},
                         {"package", "org\\.example\\.c\\+\\+"},
                         {"reason", "agreed"},
                         {"expires", "2999-12-31"}};
    EXPECT_EQ(json::parse(result.output), json({{"waivers", json::array({waiver})}}));
}

TEST_F(WaiveCommand, WhatCannotBeDoneIsSaid) {
    struct Case {
        std::vector<std::string> arguments;
        const char* error;
    };
    const Case cases[] = {
        {{}, "pkgvet: --reason is required; see pkgvet waive --help\n"},
        {{"--reason", " "}, "--reason: it says nothing"},
        {{"--reason", "x", "--expires", "soon"}, "soon is not a day of the form yyyy-mm-dd"},
        {{"--reason", "x", "--expires", "2020-01-01"}, "2020-01-01 is over"},
        {{"--reason", "x", "--rule", "dependency-not-alowed"},
         "no finding has the id \"dependency-not-alowed\"; the nearest are dependency-not-allowed"},
        {{"--reason", "x", "--subject", "strange"}, ": there is nothing to waive\n"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.error);
        const ProgramResult result = waive(test.arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_THAT(result.errors, HasSubstr(test.error));
    }
    const std::string other = own_.write("other.json", "{\n\"schema_version\": 7}");
    const ProgramResult result = runPkgvet({"waive", other, "--reason", "x"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("pkgvet: " + other + ":2:"));
}

TEST_F(WaiveCommand, GraveFindingsAreLeftOutAndNamed) {
    const std::string scripted = PackageBuilder("org.example.app")
                                     .script("%post\ntrue")
                                     .tag("Requires: stranger")
                                     .build(own_);
    const std::string report = own_.write(
        "r.json", runPkgvet({"check", "--validation", "on", "--format", "json", scripted}).output);
    const ProgramResult result = runPkgvet({"waive", report, "--reason", "x"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "pkgvet: scripts-not-allowed cannot be waived\n");
    EXPECT_THAT(result.output, testing::Not(HasSubstr("scripts-not-allowed")));
    EXPECT_THAT(result.output, HasSubstr("dependency-not-allowed"));
}

TEST_F(WaiveCommand, LinesOfJsonAreReadToo) {
    const std::string lines = own_.write("r.jsonl", check({"--format", "jsonl"}).output);
    EXPECT_EQ(runPkgvet({"waive", lines, "--reason", "agreed"}).output,
              waive({"--reason", "agreed"}).output);
}

}  // namespace
