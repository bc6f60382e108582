// What waivers, a baseline and the least severity make of a judgement.
#include "cli/policy/policy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

const Date kToday = *parseDate("2026-06-15");

Waiver waiver(const std::string& rule, const std::string& subject = ".*",
              const std::optional<Date>& lastDay = std::nullopt,
              const std::string& reason = "agreed") {
    return {"w.json", "waivers[0]", rule, pkgvet::WholePattern(subject), pkgvet::WholePattern(".*"),
            reason,   lastDay};
}

Finding finding(const std::string& rule, Severity severity = Severity::Error) {
    Finding result;
    result.rule = rule;
    result.severity = severity;
    result.message = rule + " message";
    return result;
}

// A package as the library leaves it: whether it was accepted, and why not.
PackageReport judged(bool accepted, const std::vector<Finding>& findings) {
    PackageReport package;
    package.name = "org.example.app";
    Judgement judgement;
    judgement.metaAccepted = true;
    judgement.contentAccepted = accepted;
    judgement.passes = accepted;
    judgement.findings = findings;
    package.judgements.push_back(judgement);
    return package;
}

Baseline baselineOf(const std::vector<Finding>& findings) {
    Baseline baseline;
    collect(judged(false, findings), &baseline);
    return baseline;
}

std::vector<Standing> standings(const PackageReport& package) {
    std::vector<Standing> result;
    for (const Finding& each : package.judgements[0].findings) {
        result.push_back(each.standing);
    }
    return result;
}

PackageReport chosen(PackageReport package, std::vector<Waiver> waivers, const Baseline& baseline,
                     std::optional<Severity> failOn = std::nullopt) {
    Choice(std::move(waivers), baseline, failOn, kToday).apply(&package);
    return package;
}

TEST(Choice, NothingChosenLeavesTheVerdictOfTheLibrary) {
    EXPECT_TRUE(chosen(judged(true, {}), {}, {}).passes());
    EXPECT_TRUE(chosen(judged(true, {finding("w", Severity::Warning)}), {}, {}).passes());
    EXPECT_FALSE(chosen(judged(false, {finding("e")}), {}, {}).passes());
}

TEST(Choice, WaivedErrorsPassAndTheLibrarysVerdictStays) {
    const PackageReport package =
        chosen(judged(false, {finding("a"), finding("b")}), {waiver("a"), waiver("b")}, {});
    EXPECT_TRUE(package.passes());
    EXPECT_FALSE(package.judgements[0].accepted());
    EXPECT_THAT(standings(package), ElementsAre(Standing::Waived, Standing::Waived));
    EXPECT_EQ(package.judgements[0].findings[0].reason, "agreed");
}

TEST(Choice, OneErrorThatCountsRejects) {
    const PackageReport package =
        chosen(judged(false, {finding("a"), finding("b")}), {waiver("a")}, {});
    EXPECT_FALSE(package.passes());
    EXPECT_THAT(standings(package), ElementsAre(Standing::Waived, Standing::Counts));
}

TEST(Choice, RejectionThatNoFindingAccountsForStays) {
    EXPECT_FALSE(chosen(judged(false, {}), {waiver("a")}, {}).passes());
    EXPECT_FALSE(
        chosen(judged(false, {finding("a", Severity::Warning)}), {waiver("a")}, {}).passes());
}

TEST(Choice, GraveFindingsAreNeitherWaivedNorKnown) {
    for (const Finding& grave :
         {finding("scripts", Severity::Critical), finding("setuid-file", Severity::Error)}) {
        SCOPED_TRACE(grave.rule);
        Baseline baseline;
        baseline[identityOf(grave, "org.example.app")] = 1;
        const PackageReport package = chosen(judged(false, {grave, finding("a")}),
                                             {waiver(grave.rule), waiver("a")}, baseline);
        EXPECT_FALSE(package.passes());
        EXPECT_THAT(standings(package), ElementsAre(Standing::Counts, Standing::Waived));
    }
}

TEST(Choice, WaiverHoldsUpToTheEndOfItsLastDay) {
    struct Case {
        const char* lastDay;
        bool passes;
    };
    for (const Case& test :
         {Case{"2026-06-14", false}, Case{"2026-06-15", true}, Case{"2026-06-16", true}}) {
        SCOPED_TRACE(test.lastDay);
        const Waiver limited = waiver("a", ".*", parseDate(test.lastDay));
        EXPECT_EQ(chosen(judged(false, {finding("a")}), {limited}, {}).passes(), test.passes);
    }
}

TEST(Choice, FirstWaiverThatHoldsGivesTheReason) {
    const PackageReport package =
        chosen(judged(false, {finding("a")}),
               {waiver("a", ".*", parseDate("2026-01-01"), "expired"),
                waiver("a", ".*", std::nullopt, "first"), waiver("a", "", std::nullopt, "second")},
               {});
    EXPECT_EQ(package.judgements[0].findings[0].reason, "first");
}

TEST(Choice, KnownFindingsPassAndNewOnesCount) {
    const Baseline baseline = baselineOf({finding("a")});
    EXPECT_TRUE(chosen(judged(false, {finding("a")}), {}, baseline).passes());
    const PackageReport package = chosen(judged(false, {finding("a"), finding("b")}), {}, baseline);
    EXPECT_FALSE(package.passes());
    EXPECT_THAT(standings(package), ElementsAre(Standing::Known, Standing::Counts));
}

TEST(Choice, OneMoreOfAKnownFindingCounts) {
    const Finding a = finding("a");
    const Baseline baseline = baselineOf({a, a});
    EXPECT_TRUE(chosen(judged(false, {a, a}), {}, baseline).passes());
    EXPECT_THAT(standings(chosen(judged(false, {a, a, a}), {}, baseline)),
                ElementsAre(Standing::Known, Standing::Known, Standing::Counts));
}

TEST(Choice, EachProfileHasTheWholeBaseline) {
    PackageReport package = judged(false, {finding("a")});
    package.judgements.push_back(package.judgements[0]);
    EXPECT_TRUE(chosen(package, {}, baselineOf({finding("a")})).passes());
}

TEST(Choice, WaiversComeBeforeTheBaseline) {
    const Finding a = finding("a");
    EXPECT_THAT(standings(chosen(judged(false, {a}), {waiver("a")}, baselineOf({a}))),
                ElementsAre(Standing::Waived));
}

TEST(Choice, FailOnWarningLetsWarningsReject) {
    const Finding warning = finding("w", Severity::Warning);
    const Finding info = finding("i", Severity::Info);
    const Severity least = Severity::Warning;
    EXPECT_FALSE(chosen(judged(true, {warning}), {}, {}, least).passes());
    EXPECT_TRUE(chosen(judged(true, {info}), {}, {}, least).passes());
    EXPECT_TRUE(chosen(judged(true, {warning}), {waiver("w")}, {}, least).passes());
    EXPECT_TRUE(chosen(judged(true, {warning}), {}, baselineOf({warning}), least).passes());
    EXPECT_FALSE(chosen(judged(false, {finding("a"), warning}), {waiver("a")}, {}, least).passes());
    EXPECT_TRUE(chosen(judged(false, {finding("a"), warning}), {waiver("a")}, {}).passes());
}

TEST(Choice, WithValidationOffOnlyGraveFindingsRejectUnlessMoreIsAskedFor) {
    PackageReport lenient = judged(true, {finding("a"), finding("w", Severity::Warning)});
    lenient.validationEnabled = false;
    EXPECT_TRUE(chosen(lenient, {}, {}).passes());
    EXPECT_FALSE(chosen(lenient, {}, {}, Severity::Error).passes());
    EXPECT_TRUE(chosen(lenient, {waiver("a")}, {}, Severity::Error).passes());
    EXPECT_FALSE(chosen(lenient, {}, {}, Severity::Warning).passes());

    PackageReport grave = judged(false, {finding("x"), finding("a")});
    grave.validationEnabled = false;
    EXPECT_FALSE(chosen(grave, {waiver("a"), waiver("x")}, {}).passes());
}

TEST(Choice, ExpiredAndUnusedWaiversAreNoticed) {
    Waiver expired = waiver("a", ".*", parseDate("2026-01-31"));
    expired.key = "waivers[0]";
    Waiver used = waiver("b");
    used.key = "waivers[1]";
    Waiver unused = waiver("c");
    unused.key = "waivers[2]";
    Choice choice({expired, used, unused}, {}, std::nullopt, kToday);
    PackageReport package = judged(false, {finding("a"), finding("b")});
    choice.apply(&package);
    const std::string expiry = "w.json: \"waivers[0]\" for a expired on 2026-01-31";
    EXPECT_THAT(choice.notices(true),
                ElementsAre(expiry, "w.json: \"waivers[2]\" for c was never used"));
    EXPECT_THAT(choice.notices(false), ElementsAre(expiry));
    EXPECT_THAT(Choice({used}, {}, std::nullopt, kToday).notices(false), IsEmpty());
}

}  // namespace
