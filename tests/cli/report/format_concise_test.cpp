// Lines for editors and grep, compared whole.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

std::string concise(const RunReport& run, const ReportStyle& style = {}) {
    return reportOf(Format::Concise, run, style);
}

std::string sample(const std::string& name, const ReportStyle& style = {}) {
    for (const SampleRun& one : sampleRuns()) {
        if (one.name == name) {
            return concise(one.run, style);
        }
    }
    return "no such sample";
}

TEST(FormatConcise, EachFindingIsALine) {
    EXPECT_EQ(sample("rejected"),
              "app.rpm: critical: package-scripts: [scripts] Scripts are not allowed\n"
              "app.rpm: error: library-not-allowed: [libx.so.1] Not allowed\n"
              "app.rpm: warning: file-remark: [/usr/share/a] Remarkable\n"
              "app.rpm: info: other-remark: By the way\n");
}

TEST(FormatConcise, NothingToTellIsNoLine) {
    EXPECT_EQ(sample("nothing to do"), "");
    EXPECT_EQ(sample("accepted"), "");
}

TEST(FormatConcise, PackageThatIsNotJudgedIsALine) {
    EXPECT_EQ(sample("not judged"), "/tmp/a b.rpm: error: not-judged: not an RPM package\n");
}

TEST(FormatConcise, PackageThatIsNotJudgedWholeHasALine) {
    EXPECT_EQ(sample("incomplete"),
              "app.rpm: error: incomplete: the payload is irregular\n"
              "app.rpm: critical: header-path-not-normal: [/usr/share/a] Not normal\n");
}

TEST(FormatConcise, InterruptedRunIsALine) {
    EXPECT_EQ(sample("partial"), "pkgvet: error: partial: the run was interrupted\n");
}

TEST(FormatConcise, WhatDoesNotCountComesWhenAskedForOnly) {
    const std::string counting =
        "app.rpm: critical: package-scripts: [scripts] Scripts are not allowed\n";
    const std::string rest = "app.rpm: info: other-remark: By the way\n";
    EXPECT_EQ(sample("waived and known"), counting + rest);
    ReportStyle style;
    style.showWaived = true;
    EXPECT_EQ(sample("waived and known", style),
              counting +
                  "app.rpm: error: library-not-allowed: [libx.so.1] Not allowed "
                  "(waived: until 2.0 <\"&'>)\n"
                  "app.rpm: warning: file-remark: [/usr/share/a] Remarkable (known)\n" +
                  rest);
}

TEST(FormatConcise, NoticesComeWhereStandardErrorDoesNotTellThem) {
    ReportStyle style;
    style.notices = true;
    EXPECT_TRUE(sample("waived and known", style)
                    .ends_with("\npkgvet: info: notice: a waiver is never used\n"));
}

TEST(FormatConcise, FindingOfSeveralProfilesIsOneLine) {
    const std::vector<Finding> findings = {finding("a-rule", Severity::Error, "A")};
    EXPECT_EQ(concise(runOf({package({judgement(findings, "regular"), judgement({}, "extended"),
                                      judgement(findings, "mdm")})})),
              "app.rpm: error: a-rule: A (regular, mdm)\n");
}

TEST(FormatConcise, FindingThatComesTwiceIsTwoLines) {
    const std::vector<Finding> findings(2, finding("a-rule", Severity::Error, "A"));
    EXPECT_EQ(
        concise(runOf({package({judgement(findings, "regular"), judgement(findings, "mdm")})})),
        "app.rpm: error: a-rule: A (regular, mdm)\n"
        "app.rpm: error: a-rule: A (regular, mdm)\n");
}

TEST(FormatConcise, BytesOfAPackageMakeNoLine) {
    ReportStyle style;
    style.notices = true;
    const std::string text = sample("hostile bytes", style);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
    EXPECT_EQ(text.find('\033'), std::string::npos);
}

}  // namespace
