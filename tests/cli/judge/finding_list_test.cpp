// The bounds of what is kept of a package's findings.
#include "cli/judge/finding_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using pkgvet::cli::Finding;
using pkgvet::cli::FindingList;
using pkgvet::cli::kMostOfARule;
using pkgvet::cli::Severity;
using testing::IsEmpty;

Finding finding(const std::string& rule, std::size_t number, Severity severity = Severity::Error) {
    Finding result;
    result.rule = rule;
    result.severity = severity;
    result.subject = std::to_string(number);
    result.message = rule + " " + *result.subject;
    return result;
}

TEST(FindingList, KeepsTheOrderAndHandsOver) {
    FindingList list;
    list.add(finding("b", 1));
    list.add(finding("a", 2));
    const std::vector<Finding> findings = list.take();
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].message, "b 1");
    EXPECT_EQ(findings[1].message, "a 2");
    EXPECT_THAT(list.take(), IsEmpty());
}

TEST(FindingList, TheMostOfARuleAreAllKept) {
    FindingList list;
    for (std::size_t i = 0; i < kMostOfARule; ++i) {
        list.add(finding("a", i));
        list.add(finding("a", i, Severity::Warning));
    }
    const std::vector<Finding> findings = list.take();
    EXPECT_EQ(findings.size(), 2 * kMostOfARule);
    EXPECT_EQ(findings.back().count, 1U);
}

TEST(FindingList, OneStandsForThoseBeyondIt) {
    FindingList list;
    for (std::size_t i = 0; i < 550'000; ++i) {
        list.add(finding("a", i));
        if (i < 3) {
            list.add(finding("b", i));
        }
    }
    const std::vector<Finding> findings = list.take();
    ASSERT_EQ(findings.size(), kMostOfARule + 4);
    EXPECT_EQ(findings[kMostOfARule + 2].message, "a " + std::to_string(kMostOfARule - 1));
    const Finding& rest = findings.back();
    EXPECT_EQ(rest.rule, "a");
    EXPECT_EQ(rest.severity, Severity::Error);
    EXPECT_EQ(rest.subject, std::nullopt);
    EXPECT_EQ(rest.message, "549000 further findings like these are left out");
    EXPECT_EQ(rest.count, 549'000U);
}

TEST(FindingList, CountsBeginAnewWithEachProfile) {
    FindingList list;
    for (std::size_t i = 0; i < kMostOfARule; ++i) {
        list.add(finding("a", i));
    }
    EXPECT_EQ(list.take().size(), kMostOfARule);
    list.add(finding("a", 0));
    EXPECT_EQ(list.take().size(), 1U);
}

}  // namespace
