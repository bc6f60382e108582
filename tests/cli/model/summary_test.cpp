// What a run comes to.
#include "cli/model/summary.h"

#include <gmock/gmock.h>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(MergedFindings, AFindingOfSeveralProfilesIsToldOnce) {
    const Finding a = finding("a", Severity::Error, "A");
    const Finding b = finding("b", Severity::Error, "B");
    const PackageReport report =
        package({judgement({a}, "regular"), judgement({b, a}, "mdm"), judgement({a}, "auth")});
    const std::vector<MergedFinding> merged = mergedFindings(report);
    ASSERT_EQ(merged.size(), 2U);
    EXPECT_EQ(merged[0].finding->rule, "a");
    EXPECT_THAT(merged[0].profiles, ElementsAre("regular", "mdm", "auth"));
    EXPECT_EQ(merged[1].finding->rule, "b");
    EXPECT_THAT(merged[1].profiles, ElementsAre("mdm"));
}

TEST(MergedFindings, WhatOneProfileFindsTwiceStaysTwo) {
    const Finding a = finding("a", Severity::Error, "A");
    const PackageReport report = package({judgement({a, a}, "regular"), judgement({a}, "mdm")});
    const std::vector<MergedFinding> merged = mergedFindings(report);
    ASSERT_EQ(merged.size(), 2U);
    EXPECT_THAT(merged[0].profiles, ElementsAre("regular", "mdm"));
    EXPECT_THAT(merged[1].profiles, ElementsAre("regular"));
}

TEST(MergedFindings, AnyDifferenceKeepsFindingsApart) {
    const Finding a = finding("a", Severity::Error, "A");
    std::vector<Finding> others(6, a);
    others[0].rule = "b";
    others[1].severity = Severity::Warning;
    others[2].subject = "";
    others[3].message = "B";
    others[4].standing = Standing::Waived;
    others[5].reason = "agreed";
    for (const Finding& other : others) {
        const PackageReport report =
            package({judgement({a}, "regular"), judgement({other}, "mdm")});
        EXPECT_EQ(mergedFindings(report).size(), 2U);
    }
    EXPECT_THAT(mergedFindings(package({})), IsEmpty());
}

}  // namespace
