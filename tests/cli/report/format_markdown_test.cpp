// Summaries in Markdown, compared whole.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

std::string sample(const std::string& name) {
    for (const SampleRun& one : sampleRuns()) {
        if (one.name == name) {
            return reportOf(Format::Markdown, one.run);
        }
    }
    return "no such sample";
}

TEST(FormatMarkdown, PackageHasItsVerdictAndATableOfRules) {
    EXPECT_EQ(sample("rejected"),
              "## pkgvet: 1 package: 0 accepted, 1 rejected, 0 not judged\n"
              "\n### app.rpm: rejected\n"
              "\n- rejected under regular: 2 errors, 1 warning\n"
              "\n| Severity | Rule | Findings | First |\n|---|---|---|---|\n"
              "| critical, never excused | package\\-scripts | 1 |  |\n"
              "| error | [library\\-not\\-allowed]"
              "(https://pkgvet.example/docs/findings.md#library-not-allowed) | 1 | libx.so.1 |\n"
              "| warning | file\\-remark | 1 | /usr/share/a |\n"
              "| info | [other\\-remark](https://pkgvet.example/docs/findings.md#other-remark) | 1 "
              "|  |\n");
}

TEST(FormatMarkdown, WhatWasNotJudgedSaysWhy) {
    EXPECT_NE(sample("not judged").find("### /tmp/a b.rpm: not judged\n\n- not an RPM package\n"),
              std::string::npos)
        << sample("not judged");
    EXPECT_NE(sample("incomplete").find("\n- incomplete: the payload is irregular\n"),
              std::string::npos);
}

TEST(FormatMarkdown, NothingOfAPackageIsMarkup) {
    const std::string text = sample("hostile bytes");
    EXPECT_EQ(text.find("]]> -->"), std::string::npos);
    EXPECT_EQ(text.find_first_of("\033\r\t\b"), std::string::npos);
}

TEST(FormatMarkdown, SummaryKeepsToWhatServicesTake) {
    std::vector<Finding> findings;
    for (int i = 0; i < 5; ++i) {
        findings.push_back(findingAbout(std::string(1000, static_cast<char>('a' + i)), "a-rule",
                                        Severity::Error, "A"));
    }
    const std::vector<PackageReport> packages(300, package({judgement(findings)}));
    const std::string text = reportOf(Format::Markdown, runOf(packages));
    EXPECT_LT(text.size(), std::size_t{1} << 20U);
    EXPECT_NE(text.find("\nThere is no room here for "), std::string::npos);
}

}  // namespace
