// The program's own findings, from message to line.
#include "cli/integrity/integrity_findings.h"

#include <gtest/gtest.h>

#include "cli/catalogue/integrity_messages.h"

namespace {

using namespace pkgvet::cli;

TEST(IntegrityFinding, IsTheEntryOfItsMessageWithItsPlacesFilled) {
    const Finding finding = integrityFinding(kPathNotNormal, {"/usr/../etc"});
    EXPECT_EQ(finding.rule, "header-path-not-normal");
    EXPECT_EQ(finding.severity, Severity::Critical);
    EXPECT_EQ(finding.subject, "/usr/../etc");
    EXPECT_EQ(finding.message, "[/usr/../etc] Path in the header is not absolute and normal");
}

TEST(IntegrityFindings, KeepTheirOrderAndAreTakenOnce) {
    IntegrityFindings findings;
    findings.add(kPathNotNormal, {"b"});
    findings.add(kPathNotNormal, {"a"});
    const std::vector<Finding> taken = findings.take();
    ASSERT_EQ(taken.size(), 2U);
    EXPECT_EQ(taken[0].subject, "b");
    EXPECT_EQ(taken[1].subject, "a");
    EXPECT_TRUE(findings.take().empty());
}

TEST(IntegrityFindings, OneLineTellsOfThoseBeyondTheFirstHundredOfAKind) {
    IntegrityFindings findings;
    for (int i = 0; i < 100; ++i) {
        findings.add(kPathNotNormal, {"a"});
    }
    EXPECT_EQ(findings.take().size(), 100U);
    for (int i = 0; i < 1000; ++i) {
        findings.add(kPathNotNormal, {"a"});
    }
    const std::vector<Finding> taken = findings.take();
    ASSERT_EQ(taken.size(), 101U);
    EXPECT_EQ(taken.back().rule, "integrity-findings-left-out");
    EXPECT_EQ(taken.back().message, "900 further findings like this one: header-path-not-normal");
}

}  // namespace
