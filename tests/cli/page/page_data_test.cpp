// The data of the page, read back.
#include "cli/page/page_data.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;
using Json = nlohmann::json;

std::string textOf(const RunReport& run, bool showTimings = false) {
    std::ostringstream stream;
    writePageData(run, showTimings, stream);
    return stream.str();
}

Json dataOf(const RunReport& run, bool showTimings = false) {
    return Json::parse(textOf(run, showTimings));
}

TEST(PageData, EverySampleIsJsonThatCannotEndItsElement) {
    for (const SampleRun& one : sampleRuns()) {
        SCOPED_TRACE(one.name);
        const std::string text = textOf(one.run);
        EXPECT_EQ(Json::parse(text).at("packages").size(), one.run.packages.size());
        EXPECT_EQ(text.find_first_of("<>&"), std::string::npos);
    }
}

TEST(PageData, FindingsAreKindsAndTheirNumbers) {
    const Finding a = findingAbout("/usr/a", "path-not-allowed", Severity::Error, "Not here");
    const Finding b = findingAbout("/usr/b", "path-not-allowed", Severity::Error, "Not here");
    const Json data = dataOf(runOf({package({judgement({a, b})})}));
    EXPECT_EQ(data.at("packages")[0].at("findings"), Json::parse("[0, 2]"));
    ASSERT_EQ(data.at("kinds").size(), 1U);
    const Json& kind = data.at("kinds")[0];
    EXPECT_EQ(kind.at("text"), "[\x01] Not here");
    const Json& rule = data.at("rules")[kind.at("rule").get<std::size_t>()];
    EXPECT_EQ(rule.at("id"), "path-not-allowed");
    EXPECT_NE(rule.at("fix"), "");
}

TEST(PageData, AKindSaysForHowManyFindingsItStands) {
    Finding others = finding("a", Severity::Error, "And others");
    others.count = 70'000;
    const Json kinds =
        dataOf(runOf({package({judgement({finding("a", Severity::Error, "A"), others})})}))
            .at("kinds");
    EXPECT_FALSE(kinds[0].contains("count"));
    EXPECT_EQ(kinds[1].at("count"), 70'000);
}

TEST(PageData, PrintsAreTheBeginningsOfFingerprints) {
    const Finding a = finding("a", Severity::Error, "A");
    const Finding b = finding("b", Severity::Error, "B");
    const PackageReport report = package({judgement({a, b})});
    EXPECT_EQ(
        dataOf(runOf({report})).at("packages")[0].at("prints"),
        fingerprintOf(report.name, a).substr(0, 12) + fingerprintOf(report.name, b).substr(0, 12));
}

TEST(PageData, JudgementsStandBesideTheirProfiles) {
    Judgement lies = judgement({}, "mdm");
    lies.intact = false;
    lies.passes = false;
    const Json data = dataOf(runOf({package({judgement({}), lies})}));
    EXPECT_EQ(data.at("profiles"), Json({"regular", "mdm"}));
    EXPECT_EQ(data.at("usual"), 1);
    EXPECT_EQ(data.at("packages")[0].at("profiles"), Json({0, 1}));
    EXPECT_EQ(data.at("packages")[0].at("judgements"), Json({7, 2}));
}

TEST(PageData, WhatWasNotJudgedSaysWhy) {
    PackageReport broken = unreadable("x.rpm", "took too long");
    broken.causeCode = CauseCode::OutOfTime;
    broken.lastErrorLine = "Killed";
    const Json data = dataOf(runOf({broken})).at("packages")[0];
    EXPECT_EQ(data.at("cause"), "took too long");
    EXPECT_EQ(data.at("code"), "out-of-time");
    EXPECT_EQ(data.at("last"), "Killed");
}

TEST(PageData, TimesAreThereWhenAskedFor) {
    const RunReport run = runOf({package({judgement({})})});
    EXPECT_FALSE(dataOf(run).at("packages")[0].contains("seconds"));
    EXPECT_EQ(dataOf(run, true).at("packages")[0].at("seconds"), 0.25);
}

}  // namespace
