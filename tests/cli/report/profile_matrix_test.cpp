// The matrix of rules and profiles, compared whole.
#include <gtest/gtest.h>

#include <sstream>

#include "cli/report/text_parts.h"
#include "tests/support/sample_runs.h"

namespace {

using namespace pkgvet::cli;

std::string matrix(const PackageReport& report, bool color = false) {
    std::ostringstream stream;
    writeProfileMatrix(report, color, stream);
    return stream.str();
}

TEST(ProfileMatrix, CountsFindingsOfEachRuleUnderEachProfile) {
    const Finding library = findingAbout("x", "library-not-allowed", Severity::Error, "A");
    const Finding remark = finding("a-remark", Severity::Warning, "B");
    EXPECT_EQ(matrix(package({judgement({library, library}, "regular"), judgement({}, "extended"),
                              judgement({remark, library}, "mdm")})),
              "  rule                 regular  extended  mdm\n"
              "  library-not-allowed        2         .    1\n"
              "  a-remark                   .         .    1\n");
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
    EXPECT_EQ(matrix(package({judgement({finding("a-rule", Severity::Warning, "A")}, "mdm"),
                              judgement({finding("a-rule", Severity::Error, "B")}, "auth")}),
                     true),
              "  rule    mdm  auth\n"
              "  a-rule  \033[31m  1\033[m  \033[31m   1\033[m\n");
}

TEST(ProfileMatrix, NamesOfProfilesAreEscaped) {
    const Finding found = finding("a-rule", Severity::Error, "A");
    EXPECT_EQ(matrix(package({judgement({found}, "a\nb"), judgement({found}, "c")})),
              "  rule    a\\x0ab  c\n"
              "  a-rule       1  1\n");
}

}  // namespace
