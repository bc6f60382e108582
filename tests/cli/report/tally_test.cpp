// What runs and judgements add up to.
#include "cli/report/tally.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

Finding withStanding(Standing standing, Severity severity = Severity::Error) {
    Finding result = finding("rule", severity, "text");
    result.standing = standing;
    return result;
}

PackageReport accepted() {
    return package({judgement({})});
}

PackageReport rejected() {
    return package({judgement({finding("rule", Severity::Error, "text")})});
}

TEST(Tally, EachPackageIsAcceptedRejectedOrNotJudged) {
    const PackageTally tally =
        tallyOf(runOf({accepted(), rejected(), unreadable("x", "why"), accepted()}));
    EXPECT_EQ(tally.accepted, 2U);
    EXPECT_EQ(tally.rejected, 1U);
    EXPECT_EQ(tally.notJudged, 1U);
    EXPECT_EQ(tally.packages(), 4U);
}

TEST(Tally, PackageRejectedUnderOneProfileIsRejected) {
    PackageReport mixed = accepted();
    mixed.judgements.push_back(rejected().judgements[0]);
    EXPECT_EQ(tallyOf(runOf({mixed})).rejected, 1U);
}

TEST(Tally, FindingsCountBySeverityUnlessTheyAreExcused) {
    const FindingTally tally = tallyOf(judgement({
        withStanding(Standing::Counts, Severity::Critical),
        withStanding(Standing::Counts, Severity::Error),
        withStanding(Standing::Counts, Severity::Warning),
        withStanding(Standing::Counts, Severity::Info),
        withStanding(Standing::Waived),
        withStanding(Standing::Known, Severity::Warning),
        withStanding(Standing::Known, Severity::Info),
    }));
    EXPECT_EQ(tally.errors, 2U);
    EXPECT_EQ(tally.warnings, 1U);
    EXPECT_EQ(tally.waived, 1U);
    EXPECT_EQ(tally.known, 2U);
}

TEST(Tally, FindingsThatAreLeftOutCount) {
    Finding left = withStanding(Standing::Counts, Severity::Warning);
    left.count = 549'000;
    const PackageReport report = package({judgement({withStanding(Standing::Counts), left})});
    EXPECT_EQ(countsOf(tallyOf(report.judgements[0])), "1 error, 549000 warnings");
    EXPECT_EQ(ruleTallies(report).at(0).count, 549'001U);
}

TEST(Summary, NamesTheNumbersAndAnInterruption) {
    RunReport run = runOf({accepted()});
    EXPECT_EQ(summaryOf(run), "1 package: 1 accepted, 0 rejected, 0 not judged");
    run.packages.push_back(rejected());
    run.partial = true;
    EXPECT_EQ(summaryOf(run),
              "2 packages: 1 accepted, 1 rejected, 0 not judged; the run was interrupted and this "
              "report is partial");
}

TEST(StandingNote, TellsWhyAFindingDoesNotCount) {
    Finding waived = withStanding(Standing::Waived);
    waived.reason = "agreed";
    EXPECT_EQ(standingNote(waived), " (waived: agreed)");
    EXPECT_EQ(standingNote(withStanding(Standing::Known)), " (known)");
    EXPECT_EQ(standingNote(withStanding(Standing::Counts)), "");
}

TEST(ProfilesNote, TellsTheProfilesWhereThereAreSeveral) {
    const Finding a = finding("a", Severity::Error, "A");
    const PackageReport one = package({judgement({a}, "regular")});
    EXPECT_EQ(profilesNote(one, mergedFindings(one)[0]), "");
    const PackageReport two = package({judgement({a}, "regular"), judgement({a}, "mdm")});
    EXPECT_EQ(profilesNote(two, mergedFindings(two)[0]), " (regular, mdm)");
}

}  // namespace
