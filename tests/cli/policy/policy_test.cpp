// What waivers, a baseline and the least severity make of a judgement.
#include "cli/policy/policy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const Date kToday = *parseDate("2026-06-15");

Waiver waiver(const std::string& rule, const std::string& subject = ".*",
              const std::optional<Date>& lastDay = std::nullopt,
              const std::string& reason = "agreed") {
    return {"w.json", {},      rule, pkgvet::WholePattern(subject), pkgvet::WholePattern(".*"),
            reason,   lastDay, {}};
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

PackageReport applied(PackageReport package, std::vector<Waiver> waivers, const Baseline& baseline,
                      std::optional<Severity> failOn = std::nullopt) {
    Policy(std::move(waivers), baseline, failOn, kToday).apply(&package);
    return package;
}

TEST(Policy, AnEmptyPolicyLeavesTheVerdictOfTheLibrary) {
    EXPECT_TRUE(applied(judged(true, {}), {}, {}).passes());
    EXPECT_TRUE(applied(judged(true, {finding("w", Severity::Warning)}), {}, {}).passes());
    EXPECT_FALSE(applied(judged(false, {finding("e")}), {}, {}).passes());
}

TEST(Policy, WaivedErrorsPassAndTheLibrarysVerdictStays) {
    const PackageReport package =
        applied(judged(false, {finding("a"), finding("b")}), {waiver("a"), waiver("b")}, {});
    EXPECT_TRUE(package.passes());
    EXPECT_FALSE(package.judgements[0].accepted());
    EXPECT_THAT(standings(package), ElementsAre(Standing::Waived, Standing::Waived));
    EXPECT_EQ(package.judgements[0].findings[0].reason, "agreed");
}

TEST(Policy, OneErrorThatCountsRejects) {
    const PackageReport package =
        applied(judged(false, {finding("a"), finding("b")}), {waiver("a")}, {});
    EXPECT_FALSE(package.passes());
    EXPECT_THAT(standings(package), ElementsAre(Standing::Waived, Standing::Counts));
}

TEST(Policy, RejectionThatNoFindingAccountsForStays) {
    EXPECT_FALSE(applied(judged(false, {}), {waiver("a")}, {}).passes());
    EXPECT_FALSE(
        applied(judged(false, {finding("a", Severity::Warning)}), {waiver("a")}, {}).passes());
}

TEST(Policy, GraveFindingsAreNeitherWaivedNorKnown) {
    for (const Finding& grave :
         {finding("scripts", Severity::Critical), finding("setuid-file", Severity::Error)}) {
        SCOPED_TRACE(grave.rule);
        Baseline baseline;
        baseline[identityOf(grave, "org.example.app")] = 1;
        const PackageReport package = applied(judged(false, {grave, finding("a")}),
                                              {waiver(grave.rule), waiver("a")}, baseline);
        EXPECT_FALSE(package.passes());
        EXPECT_THAT(standings(package), ElementsAre(Standing::Counts, Standing::Waived));
    }
}

TEST(Policy, WaiverHoldsUpToTheEndOfItsLastDay) {
    struct Case {
        const char* lastDay;
        bool passes;
    };
    for (const Case& test :
         {Case{"2026-06-14", false}, Case{"2026-06-15", true}, Case{"2026-06-16", true}}) {
        SCOPED_TRACE(test.lastDay);
        const Waiver limited = waiver("a", ".*", parseDate(test.lastDay));
        EXPECT_EQ(applied(judged(false, {finding("a")}), {limited}, {}).passes(), test.passes);
    }
}

TEST(Policy, FirstWaiverThatHoldsGivesTheReason) {
    const PackageReport package =
        applied(judged(false, {finding("a")}),
                {waiver("a", ".*", parseDate("2026-01-01"), "expired"),
                 waiver("a", ".*", std::nullopt, "first"), waiver("a", "", std::nullopt, "second")},
                {});
    EXPECT_EQ(package.judgements[0].findings[0].reason, "first");
}

TEST(Policy, KnownFindingsPassAndNewOnesCount) {
    const Baseline baseline = baselineOf({finding("a")});
    EXPECT_TRUE(applied(judged(false, {finding("a")}), {}, baseline).passes());
    const PackageReport package =
        applied(judged(false, {finding("a"), finding("b")}), {}, baseline);
    EXPECT_FALSE(package.passes());
    EXPECT_THAT(standings(package), ElementsAre(Standing::Known, Standing::Counts));
}

TEST(Policy, OneMoreOfAKnownFindingCounts) {
    const Finding a = finding("a");
    const Baseline baseline = baselineOf({a, a});
    EXPECT_TRUE(applied(judged(false, {a, a}), {}, baseline).passes());
    EXPECT_THAT(standings(applied(judged(false, {a, a, a}), {}, baseline)),
                ElementsAre(Standing::Known, Standing::Known, Standing::Counts));
}

TEST(Policy, EachProfileHasTheWholeBaseline) {
    PackageReport package = judged(false, {finding("a")});
    package.judgements.push_back(package.judgements[0]);
    EXPECT_TRUE(applied(package, {}, baselineOf({finding("a")})).passes());
}

TEST(Policy, WaiversComeBeforeTheBaseline) {
    const Finding a = finding("a");
    EXPECT_THAT(standings(applied(judged(false, {a}), {waiver("a")}, baselineOf({a}))),
                ElementsAre(Standing::Waived));
}

TEST(Policy, FailOnWarningLetsWarningsReject) {
    const Finding warning = finding("w", Severity::Warning);
    const Finding info = finding("i", Severity::Info);
    const Severity least = Severity::Warning;
    EXPECT_FALSE(applied(judged(true, {warning}), {}, {}, least).passes());
    EXPECT_TRUE(applied(judged(true, {info}), {}, {}, least).passes());
    EXPECT_TRUE(applied(judged(true, {warning}), {waiver("w")}, {}, least).passes());
    EXPECT_TRUE(applied(judged(true, {warning}), {}, baselineOf({warning}), least).passes());
    EXPECT_FALSE(
        applied(judged(false, {finding("a"), warning}), {waiver("a")}, {}, least).passes());
    EXPECT_TRUE(applied(judged(false, {finding("a"), warning}), {waiver("a")}, {}).passes());
}

TEST(Policy, WithValidationOffOnlyGraveFindingsRejectUnlessMoreIsAskedFor) {
    PackageReport lenient = judged(true, {finding("a"), finding("w", Severity::Warning)});
    lenient.validationEnabled = false;
    EXPECT_TRUE(applied(lenient, {}, {}).passes());
    EXPECT_FALSE(applied(lenient, {}, {}, Severity::Error).passes());
    EXPECT_TRUE(applied(lenient, {waiver("a")}, {}, Severity::Error).passes());
    EXPECT_FALSE(applied(lenient, {}, {}, Severity::Warning).passes());

    PackageReport grave = judged(false, {finding("x"), finding("a")});
    grave.validationEnabled = false;
    EXPECT_FALSE(applied(grave, {waiver("a"), waiver("x")}, {}).passes());
}

TEST(Policy, ExpiredAndUnusedWaiversAreNoticed) {
    Waiver expired = waiver("a", ".*", parseDate("2026-01-31"));
    expired.lastDayPosition = {5, 20};
    const Waiver used = waiver("b");
    Waiver unused = waiver("c");
    unused.position = {9, 3};
    Policy policy({expired, used, unused}, {}, std::nullopt, kToday);
    PackageReport package = judged(false, {finding("a"), finding("b")});
    policy.apply(&package);
    const std::string expiry = "w.json:5:20: the waiver for a expired on 2026-01-31";
    EXPECT_THAT(policy.notices(true),
                ElementsAre(expiry, "w.json:9:3: the waiver for c was never used"));
    EXPECT_THAT(policy.notices(false), ElementsAre(expiry));
    EXPECT_THAT(Policy({used}, {}, std::nullopt, kToday).notices(false), IsEmpty());
}

TEST(Policy, WaiverThatIsAboutToExpireIsNoticed) {
    const auto noticesOf = [](int days) {
        const Date lastDay = std::chrono::sys_days(kToday) + std::chrono::days(days);
        return Policy({waiver("a", ".*", lastDay)}, {}, std::nullopt, kToday).notices(false);
    };
    EXPECT_THAT(noticesOf(-1), ElementsAre(HasSubstr(" expired on ")));
    EXPECT_THAT(noticesOf(0),
                ElementsAre("w.json: the waiver for a expires after " + formatDate(kToday)));
    EXPECT_THAT(noticesOf(14), ElementsAre(HasSubstr("expires after")));
    EXPECT_THAT(noticesOf(15), IsEmpty());
}

// Nothing that a user says makes up for a package that is not what it seems.
TEST(Policy, WhatIsNotIntactNeverPasses) {
    for (const bool validationEnabled : {true, false}) {
        for (const bool accepted : {true, false}) {
            PackageReport package = judged(accepted, {finding("a")});
            package.judgements[0].intact = false;
            package.validationEnabled = validationEnabled;
            EXPECT_FALSE(applied(package, {waiver("a")}, baselineOf({finding("a")})).passes());
        }
    }
}

}  // namespace
