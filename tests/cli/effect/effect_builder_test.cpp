// Which verdicts turn and which findings appear and vanish between two judgements.
#include "cli/effect/effect_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/base/exit_status.h"
#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;

Finding library(const std::string& subject) {
    return findingAbout(subject, "library-not-allowed", Severity::Error, "Not allowed");
}

Finding icon() {
    return finding("icon-missing", Severity::Warning, "Icon is missing");
}

PackageReport notJudged() {
    PackageReport report = package({});
    report.setCause({CauseCode::OutOfTime, "it took too long"});
    return report;
}

Effect effectOf(const PackageReport& before, const PackageReport& after,
                CauseFinder findCause = nullptr) {
    EffectBuilder builder(std::move(findCause));
    builder.compare(before, after);
    return builder.take();
}

std::vector<std::string> linesOf(const std::vector<TurnedVerdict>& turned) {
    std::vector<std::string> lines;
    for (const TurnedVerdict& one : turned) {
        lines.push_back(one.path + " " + one.profile + ": " + std::string(verdictName(one.before)) +
                        ", " + std::string(verdictName(one.after)));
    }
    return lines;
}

std::vector<std::string> linesOf(const std::vector<RuleChange>& rules) {
    std::vector<std::string> lines;
    for (const RuleChange& rule : rules) {
        lines.push_back(rule.rule + " " + std::to_string(rule.findings) + " in " +
                        std::to_string(rule.packages));
    }
    return lines;
}

TEST(EffectBuilder, EqualJudgementsHaveNoEffect) {
    const PackageReport same = package({judgement({library("a"), library("a"), icon()})});
    const Effect effect = effectOf(same, same);
    EXPECT_EQ(effect.compared, 1U);
    EXPECT_TRUE(effect.turned.empty() && effect.appeared.empty() && effect.vanished.empty());
    EXPECT_EQ(statusOf(effect), kAccepted);
}

TEST(EffectBuilder, VerdictsTurnUnderEachProfile) {
    struct Case {
        const char* name;
        PackageReport before;
        PackageReport after;
        std::vector<std::string> turned;
        int status;
    };
    const PackageReport good = package({judgement({}, "regular"), judgement({}, "mdm")});
    const PackageReport bad = package({judgement({}, "regular"), judgement({library("a")}, "mdm")});
    const Case cases[] = {
        {"rejected now", good, bad, {"app.rpm mdm: accepted, rejected"}, kRejected},
        {"accepted now", bad, good, {"app.rpm mdm: rejected, accepted"}, kRejected},
        {"not judged now",
         good,
         notJudged(),
         {"app.rpm regular: accepted, not judged", "app.rpm mdm: accepted, not judged"},
         kNotJudged},
        {"judged now",
         notJudged(),
         bad,
         {"app.rpm regular: not judged, accepted", "app.rpm mdm: not judged, rejected"},
         kNotJudged},
        {"never judged", notJudged(), notJudged(), {}, kNotJudged},
        {"a profile of one side alone", package({judgement({}, "regular")}), bad, {}, kAccepted},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const Effect effect = effectOf(test.before, test.after);
        EXPECT_EQ(linesOf(effect.turned), test.turned);
        EXPECT_EQ(statusOf(effect), test.status);
    }
}

TEST(EffectBuilder, FindingsAreToldByRuleAndSubject) {
    Finding reworded = library("a");
    reworded.message = "In other words";
    reworded.severity = Severity::Warning;
    const Effect effect =
        effectOf(package({judgement({library("a"), library("b"), library("b"), icon()})}),
                 package({judgement({reworded, library("b"), library("c"), library("d")})}));
    EXPECT_THAT(linesOf(effect.appeared), ElementsAre("library-not-allowed 2 in 1"));
    EXPECT_THAT(linesOf(effect.vanished),
                ElementsAre("icon-missing 1 in 1", "library-not-allowed 1 in 1"));
    EXPECT_EQ(effect.appeared[0].worst, Severity::Error);
    EXPECT_EQ(effect.appeared[0].first[0].subject, "c");
    EXPECT_EQ(effect.vanished[0].first[0].subject, std::nullopt);
}

TEST(EffectBuilder, FindingOfSeveralProfilesCountsOnce) {
    const Effect effect =
        effectOf(package({judgement({}, "regular"), judgement({library("b")}, "mdm")}),
                 package({judgement({library("a"), library("b")}, "regular"),
                          judgement({library("a"), library("a"), library("b")}, "mdm")}));
    EXPECT_THAT(linesOf(effect.appeared), ElementsAre("library-not-allowed 3 in 1"));
    EXPECT_TRUE(effect.vanished.empty());
}

TEST(EffectBuilder, ExcusedFindingsDoNotCount) {
    Finding waived = library("a");
    waived.standing = Standing::Waived;
    const Effect effect =
        effectOf(package({judgement({library("a")})}), package({judgement({waived})}));
    EXPECT_THAT(linesOf(effect.vanished), ElementsAre("library-not-allowed 1 in 1"));
}

TEST(EffectBuilder, OfWhatWasNotJudgedNoFindingVanishes) {
    const Effect effect = effectOf(package({judgement({library("a")})}), notJudged());
    EXPECT_TRUE(effect.vanished.empty());
    ASSERT_EQ(effect.notJudged.size(), 1U);
    EXPECT_EQ(effect.notJudged[0].path, "app.rpm");
    EXPECT_EQ(effect.notJudged[0].before, "");
    EXPECT_EQ(effect.notJudged[0].after, "it took too long");
}

TEST(EffectBuilder, RulesWithMostFindingsComeFirstWithTheFirstPackages) {
    EffectBuilder builder;
    for (int i = 0; i < 7; ++i) {
        PackageReport after = package({judgement({library("a"), library("b"), icon()})});
        after.path = std::to_string(i);
        builder.compare(package({judgement({})}), after);
    }
    const Effect effect = builder.take();
    EXPECT_THAT(linesOf(effect.appeared),
                ElementsAre("library-not-allowed 14 in 7", "icon-missing 7 in 7"));
    std::string first;
    for (const RuleChange::Place& place : effect.appeared[0].first) {
        first += place.path + " " + *place.subject + ";";
    }
    EXPECT_EQ(first, "0 a;1 a;2 a;3 a;4 a;");
}

TEST(EffectBuilder, CausesAreCountedByFinding) {
    const auto cause = [](const Finding& finding, const std::string& profile, Change change) {
        return finding.subject == "c" ? std::string()
                                      : profile + (change == Change::Appears ? " gained" : " lost");
    };
    const Effect effect =
        effectOf(package({judgement({icon()})}),
                 package({judgement({library("a"), library("b"), library("c")})}), cause);
    EXPECT_THAT(effect.appeared[0].causes, ElementsAre(testing::Pair("regular gained", 2)));
    EXPECT_THAT(effect.vanished[0].causes, ElementsAre(testing::Pair("regular lost", 1)));
}

TEST(EffectBuilder, PackagesOfOneSideAreNamed) {
    EffectBuilder builder;
    builder.add(unreadable("new.rpm", "why"));
    builder.remove(unreadable("old.rpm", "why"));
    const Effect effect = builder.take();
    EXPECT_THAT(effect.added, ElementsAre("new.rpm"));
    EXPECT_THAT(effect.removed, ElementsAre("old.rpm"));
    EXPECT_EQ(effect.compared, 0U);
    EXPECT_EQ(effect.notJudged.size(), 1U);
}

}  // namespace
