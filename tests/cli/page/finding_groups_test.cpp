// The findings of a package in groups.
#include "cli/page/finding_groups.h"

#include <gtest/gtest.h>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

std::vector<std::vector<std::string>> subjectsOf(const std::vector<FindingGroup>& groups) {
    std::vector<std::vector<std::string>> result;
    for (const FindingGroup& group : groups) {
        result.emplace_back();
        for (const Finding* one : group.findings) {
            result.back().push_back(one->subject.value_or("none"));
        }
    }
    return result;
}

TEST(FindingGroups, TheMostSevereComeFirstAndEachKindStaysTogether) {
    const PackageReport report = package({judgement(
        {findingAbout("/a", "r", Severity::Warning, "W"),
         findingAbout("/b", "r", Severity::Error, "E"),
         findingAbout("/c", "r", Severity::Warning, "W"), finding("s", Severity::Error, "S")})});
    FindingKinds kinds(runOf({}));
    const std::vector<std::vector<std::string>> expected = {{"/b"}, {"none"}, {"/a", "/c"}};
    EXPECT_EQ(subjectsOf(groupsOf(report, &kinds)), expected);
}

TEST(FindingGroups, WhatSeveralProfilesFindIsToldOnce) {
    const Finding a = findingAbout("/a", "r", Severity::Error, "E");
    const PackageReport report = package({judgement({a}), judgement({a}, "mdm")});
    FindingKinds kinds(runOf({}));
    EXPECT_EQ(subjectsOf(groupsOf(report, &kinds)),
              (std::vector<std::vector<std::string>>{{"/a"}}));
}

}  // namespace
