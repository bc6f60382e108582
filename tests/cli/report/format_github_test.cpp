// Workflow commands, compared whole.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

std::string github(const RunReport& run) {
    return reportOf(Format::Github, run);
}

std::string sample(const std::string& name) {
    for (const SampleRun& one : sampleRuns()) {
        if (one.name == name) {
            return github(one.run);
        }
    }
    return "no such sample";
}

TEST(FormatGithub, WorstRuleComesFirstAndSeverityDecidesTheCommand) {
    EXPECT_EQ(sample("rejected"),
              "::error file=app.rpm,title=package-scripts::[scripts] Scripts are not allowed\n"
              "::error file=app.rpm,title=library-not-allowed::[libx.so.1] Not allowed\n"
              "::warning file=app.rpm,title=file-remark::[/usr/share/a] Remarkable\n"
              "::notice file=app.rpm,title=other-remark::By the way\n"
              "::notice title=pkgvet::1 package: 0 accepted, 1 rejected, 0 not judged\n");
}

TEST(FormatGithub, RuleIsOneAnnotationWithItsCountAndFirstSubjects) {
    std::vector<Finding> findings;
    for (const char* name : {"a", "b", "c", "d", "e", "f", "a", "g,%"}) {
        findings.push_back(findingAbout(name, "icon-missing", Severity::Error, "Not found"));
    }
    PackageReport other = package({judgement({findings.front()})});
    other.path = "other.rpm";
    EXPECT_EQ(github(runOf({package({judgement(findings)}), other})),
              "::error file=app.rpm,title=icon-missing::Icon is missing or has the wrong size "
              "(9 findings): a, b, c, d, e, 2 more\n"
              "::notice title=pkgvet::2 packages: 0 accepted, 2 rejected, 0 not judged\n");
}

TEST(FormatGithub, EveryRunEndsWithASummary) {
    EXPECT_EQ(sample("nothing to do"),
              "::notice title=pkgvet::0 packages: 0 accepted, 0 rejected, 0 not judged\n");
    EXPECT_EQ(sample("accepted"),
              "::notice title=pkgvet::1 package: 1 accepted, 0 rejected, 0 not judged\n");
    EXPECT_EQ(sample("partial"),
              "::error title=pkgvet::1 package: 1 accepted, 0 rejected, 0 not judged; the run was "
              "interrupted and this report is partial\n");
}

TEST(FormatGithub, PackageThatIsNotJudgedIsAnError) {
    EXPECT_EQ(sample("not judged"),
              "::error file=/tmp/a b.rpm,title=not-judged::not an RPM package\n"
              "::notice title=pkgvet::1 package: 0 accepted, 0 rejected, 1 not judged\n");
}

TEST(FormatGithub, PackageThatIsNotJudgedWholeHasAnError) {
    EXPECT_EQ(sample("incomplete"),
              "::error file=app.rpm,title=incomplete::the payload is irregular\n"
              "::error file=app.rpm,title=header-path-not-normal::[/usr/share/a] Not normal\n"
              "::notice title=pkgvet::1 package: 0 accepted, 1 rejected, 0 not judged\n");
}

TEST(FormatGithub, WhatDoesNotCountIsANotice) {
    const std::string text = sample("waived and known");
    EXPECT_NE(text.find("::notice title=pkgvet::2 findings waived or known to the baseline\n"),
              std::string::npos)
        << text;
    EXPECT_EQ(text.find("library-not-allowed"), std::string::npos);
    EXPECT_NE(text.find("::notice title=pkgvet::a waiver is never used\n"), std::string::npos);
}

TEST(FormatGithub, PropertiesAndTextAreEscaped) {
    PackageReport report =
        package({judgement({finding("a-rule", Severity::Error, "50% a,b: c\nd")})});
    report.path = "a,b:c%.rpm";
    EXPECT_EQ(github(runOf({report})),
              "::error file=a%2Cb%3Ac%25.rpm,title=a-rule::50%25 a,b: c\\x0ad\n"
              "::notice title=pkgvet::1 package: 0 accepted, 1 rejected, 0 not judged\n");
}

TEST(FormatGithub, BytesOfAPackageMakeNoCommand) {
    std::istringstream lines(sample("hostile bytes"));
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_EQ(line.find("::"), 0U) << line;
        EXPECT_EQ(line.find_first_of("\033\r"), std::string::npos) << line;
    }
    EXPECT_EQ(count, 4);
}

}  // namespace
