// The matrix of rules and profiles, compared whole.
#include <gtest/gtest.h>

#include <sstream>

#include "cli/report/text_parts.h"
#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

std::string matrix(const PackageReport& report, bool color = false) {
    ReportStyle style;
    style.color = color;
    std::ostringstream stream;
    writeProfileMatrix(report, style, stream);
    return stream.str();
}

TEST(ProfileMatrix, CountsFindingsOfRulesInWhichProfilesDiffer) {
    const Finding library = findingAbout("x", "library-not-allowed", Severity::Error, "A");
    const Finding remark = finding("a-remark", Severity::Warning, "B");
    const Finding common = finding("common", Severity::Warning, "C");
    EXPECT_EQ(matrix(package({judgement({common, library, library}, "regular"),
                              judgement({common}, "extended"),
                              judgement({remark, library, common}, "mdm")})),
              "  rule                 regular  extended  mdm\n"
              "  library-not-allowed        2         .    1\n"
              "  a-remark                   .         .    1\n"
              "  1 rule is broken alike under all profiles\n");
}

TEST(ProfileMatrix, RulesThatAreAlikeAreCounted) {
    const std::vector<Finding> findings = {finding("a", Severity::Error, "A"),
                                           finding("b", Severity::Error, "B")};
    EXPECT_EQ(matrix(package({judgement(findings, "regular"), judgement(findings, "mdm")})),
              "  2 rules are broken alike under all profiles\n");
}

TEST(ProfileMatrix, PackageWithoutFindingsHasNone) {
    EXPECT_EQ(matrix(package({judgement({}, "regular"), judgement({}, "mdm")})), "");
}

TEST(ProfileMatrix, WhatDoesNotCountIsLeftOut) {
    Finding waived = finding("a-rule", Severity::Error, "A");
    waived.standing = Standing::Waived;
    EXPECT_EQ(matrix(package({judgement({waived}, "regular"), judgement({waived}, "mdm")})), "");
}

TEST(ProfileMatrix, ColorIsThatOfTheWorstFinding) {
    const Finding warning = finding("a-rule", Severity::Warning, "A");
    const Finding error = finding("a-rule", Severity::Error, "B");
    EXPECT_EQ(
        matrix(package({judgement({warning}, "mdm"), judgement({error, error}, "auth")}), true),
        "  rule    mdm  auth\n"
        "  a-rule  \033[31m  1\033[m  \033[31m   2\033[m\n");
}

TEST(ProfileMatrix, NamesOfProfilesAreEscaped) {
    const Finding found = finding("a-rule", Severity::Error, "A");
    EXPECT_EQ(matrix(package({judgement({found}, "a\nb"), judgement({}, "c")})),
              "  rule    a\\x0ab  c\n"
              "  a-rule       1  .\n");
}

}  // namespace
