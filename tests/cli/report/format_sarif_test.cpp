// SARIF, held against the part of its schema that is used.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/program/sample_runs.h"
#include "tests/support/program/schemas.h"

namespace {

using namespace pkgvet::cli;
using Json = nlohmann::json;

Json runJson(const RunReport& run) {
    const Json document = Json::parse(reportOf(Format::Sarif, run));
    EXPECT_EQ(document["runs"].size(), 1U);
    return document["runs"][0];
}

Json sample(const std::string& name) {
    for (const SampleRun& one : sampleRuns()) {
        if (one.name == name) {
            return runJson(one.run);
        }
    }
    return {};
}

RunReport oneFinding(const Finding& found) {
    return runOf({package({judgement({found})})});
}

std::string fingerprint(const RunReport& run, std::size_t result = 0) {
    return runJson(run)["results"][result]["partialFingerprints"]["pkgvetFinding/v1"];
}

TEST(FormatSarif, EveryWayOutKeepsToTheSchema) {
    ReportStyle timings;
    timings.timings = true;
    std::vector<std::string> documents;
    for (const SampleRun& one : sampleRuns()) {
        documents.push_back(reportOf(Format::Sarif, one.run));
        documents.push_back(reportOf(Format::Sarif, one.run, timings));
    }
    EXPECT_EQ(jsonFaults("tests/schemas/sarif-used.schema.json", documents), "");
}

TEST(FormatSarif, ResultsPointToTheRulesThatOccur) {
    const Json run = sample("rejected");
    const Json rules = run["tool"]["driver"]["rules"];
    ASSERT_EQ(rules.size(), 4U);
    ASSERT_EQ(run["results"].size(), 4U);
    for (const Json& result : run["results"]) {
        EXPECT_EQ(rules[result["ruleIndex"].get<std::size_t>()]["id"], result["ruleId"]);
    }
}

TEST(FormatSarif, ResultSaysWhatAndWhere) {
    const Json result = sample("rejected")["results"][1];
    EXPECT_EQ(result["ruleId"], "library-not-allowed");
    EXPECT_EQ(result["level"], "error");
    EXPECT_EQ(result["message"]["text"], "[libx.so.1] Not allowed");
    EXPECT_EQ(result["locations"], Json::parse(R"([{
        "physicalLocation": {"artifactLocation": {"uri": "app.rpm", "index": 0},
                             "region": {"startLine": 1}},
        "logicalLocations": [{"name": "libx.so.1",
                              "fullyQualifiedName": "org.example.app: libx.so.1"}]}])"));
    EXPECT_EQ(result["properties"]["profiles"], Json::parse(R"(["regular"])"));
}

TEST(FormatSarif, SeverityDecidesTheLevel) {
    const Json results = sample("rejected")["results"];
    const std::vector<std::string> levels = {"error", "error", "warning", "note"};
    for (std::size_t i = 0; i < levels.size(); ++i) {
        EXPECT_EQ(results[i]["level"], levels[i]);
    }
}

TEST(FormatSarif, FileInAPackageIsAnArtifactNestedInIt) {
    const Finding file = findingAbout("/usr/bin/a b", "setuid-file", Severity::Error, "A");
    const Finding again = findingAbout("/usr/bin/a b", "path-not-allowed", Severity::Error, "A");
    PackageReport other = package({judgement({file})});
    other.path = "other.rpm";
    const Json run = runJson(runOf({package({judgement({file, again})}), other}));
    ASSERT_EQ(run["artifacts"].size(), 4U);
    EXPECT_EQ(run["artifacts"][2],
              Json::parse(R"({"location": {"uri": "/usr/bin/a%20b"}, "parentIndex": 0})"));
    EXPECT_EQ(run["artifacts"][3]["parentIndex"], 1);
    EXPECT_EQ(run["results"][0]["relatedLocations"], Json::parse(R"([{"physicalLocation":
        {"artifactLocation": {"uri": "/usr/bin/a%20b", "index": 2}}}])"));
    EXPECT_EQ(run["results"][1]["relatedLocations"], run["results"][0]["relatedLocations"]);
    EXPECT_EQ(run["results"][2]["locations"][0]["physicalLocation"]["artifactLocation"]["index"],
              1);
    EXPECT_FALSE(sample("rejected")["results"][1].contains("relatedLocations"));
}

TEST(FormatSarif, RuleSaysWhatPagesShow) {
    const Json run = runJson(oneFinding(findingAbout("/a", "setuid-file", Severity::Error, "A")));
    const Json driver = run["tool"]["driver"];
    const Json rule = driver["rules"][0];
    const std::string home = driver["informationUri"];
    EXPECT_EQ(rule["helpUri"], home + "docs/findings.md#setuid-file");
    EXPECT_EQ(rule["properties"],
              Json::parse(R"({"tags": ["files", "security"], "security-severity": "9.3"})"));
    const std::string markdown = rule["help"]["markdown"];
    EXPECT_EQ(markdown.find("**Rule.** "), 0U) << markdown;
    EXPECT_NE(markdown.find("\n\n**What to do.** "), std::string::npos);
}

TEST(FormatSarif, RuleThatIsNotGraveHasNoScore) {
    const Json run = runJson(oneFinding(finding("icon-missing", Severity::Error, "A")));
    EXPECT_FALSE(run["tool"]["driver"]["rules"][0]["properties"].contains("security-severity"));
}

TEST(FormatSarif, CategoryIsThatOfTheProfiles) {
    RunReport run = runOf({});
    run.provenance.profiles = {{"regular"}, {"mdm"}};
    EXPECT_EQ(runJson(run)["automationDetails"]["id"], "pkgvet/regular+mdm/");
}

TEST(FormatSarif, SubjectThatIsAbsentHasNoPlace) {
    EXPECT_FALSE(sample("rejected")["results"][0]["locations"][0].contains("logicalLocations"));
}

TEST(FormatSarif, FingerprintKeepsToRulePackageAndSubject) {
    const Finding found = findingAbout("x", "a-rule", Severity::Error, "Text");
    const std::string former = fingerprint(oneFinding(found));
    RunReport elsewhere = oneFinding(findingAbout("x", "a-rule", Severity::Warning, "Other"));
    elsewhere.packages[0].path = "/elsewhere/app.rpm";
    elsewhere.packages[0].version = "2.0";
    EXPECT_EQ(fingerprint(elsewhere), former);
    EXPECT_NE(fingerprint(oneFinding(findingAbout("y", "a-rule", Severity::Error, "Text"))),
              former);
    EXPECT_NE(fingerprint(oneFinding(findingAbout("x", "b-rule", Severity::Error, "Text"))),
              former);
    RunReport other = oneFinding(found);
    other.packages[0].name = "org.example.other";
    EXPECT_NE(fingerprint(other), former);
}

TEST(FormatSarif, FingerprintNeverChanges) {
    // Pages of other people follow findings by it.
    EXPECT_EQ(fingerprint(oneFinding(findingAbout("x", "a-rule", Severity::Error, "Text"))),
              "a0311c89eb798ebb5d335aebcf74b7a1");
}

TEST(FormatSarif, EqualFindingsAreNumbered) {
    const std::vector<Finding> findings(2, finding("a-rule", Severity::Error, "A"));
    const RunReport run = runOf({package({judgement(findings)})});
    const Json results = runJson(run)["results"];
    ASSERT_EQ(results.size(), 2U);
    const std::string hash = fingerprint(run);
    EXPECT_EQ(results[0]["partialFingerprints"]["primaryLocationLineHash"], hash + ":1");
    EXPECT_EQ(results[1]["partialFingerprints"]["primaryLocationLineHash"], hash + ":2");
}

TEST(FormatSarif, WhatDoesNotCountIsSuppressed) {
    const Json results = sample("waived and known")["results"];
    EXPECT_EQ(results[0]["suppressions"], Json::array());
    EXPECT_EQ(results[1]["suppressions"], Json::parse(R"([{"kind": "external",
        "status": "accepted", "justification": "until 2.0 <\"&'>"}])"));
    EXPECT_EQ(results[2]["suppressions"][0]["justification"], "known to the baseline");
}

TEST(FormatSarif, FindingOfSeveralProfilesIsOneResult) {
    const std::vector<Finding> findings = {finding("a-rule", Severity::Error, "A")};
    const Json run =
        runJson(runOf({package({judgement(findings, "regular"), judgement(findings, "mdm")})}));
    ASSERT_EQ(run["results"].size(), 1U);
    EXPECT_EQ(run["results"][0]["properties"]["profiles"], Json::parse(R"(["regular", "mdm"])"));
    EXPECT_EQ(run["artifacts"][0]["properties"]["verdicts"].size(), 2U);
}

TEST(FormatSarif, InvocationTellsWhatWasNotJudged) {
    EXPECT_EQ(sample("rejected")["invocations"],
              Json::parse(R"([{"executionSuccessful": true, "toolExecutionNotifications": []}])"));
    EXPECT_EQ(sample("not judged")["invocations"], Json::parse(R"([{"executionSuccessful": false,
        "toolExecutionNotifications": [{"descriptor": {"id": "not-judged"}, "level": "error",
            "message": {"text": "/tmp/a b.rpm could not be judged: not an RPM package"},
            "locations": [{"physicalLocation": {"artifactLocation":
                {"uri": "file:///tmp/a%20b.rpm", "index": 0},
                "region": {"startLine": 1}}}]}]}])"));
}

TEST(FormatSarif, InterruptedRunIsNoSuccess) {
    const Json run = sample("partial");
    const Json invocation = run["invocations"][0];
    EXPECT_EQ(invocation["executionSuccessful"], false);
    EXPECT_EQ(invocation["toolExecutionNotifications"][0]["descriptor"]["id"], "partial");
    EXPECT_EQ(run["properties"]["complete"], false);
}

TEST(FormatSarif, ArtifactCarriesHashAndVerdicts) {
    EXPECT_EQ(sample("accepted")["artifacts"], Json::parse(R"([{
        "location": {"uri": "app.rpm"}, "hashes": {"sha-256": ")" +
                                                           std::string(64, 'a') + R"("},
        "properties": {"name": "org.example.app", "version": "1.0", "release": "1",
            "arch": "noarch", "validation_enabled": true, "complete": true, "passes": true,
            "verdicts": [{"profile": "regular", "meta_accepted": true, "content_accepted": true,
                          "accepted": true, "intact": true, "passes": true}]}}])"));
}

TEST(FormatSarif, PackageThatIsNotJudgedWholeIsANotification) {
    const Json run = sample("incomplete");
    EXPECT_EQ(run["invocations"][0]["toolExecutionNotifications"][0]["descriptor"]["id"],
              "incomplete");
    EXPECT_EQ(run["artifacts"][0]["properties"]["complete"], false);
    EXPECT_EQ(run["artifacts"][0]["properties"]["verdicts"][0]["intact"], false);
}

TEST(FormatSarif, MessageOfAPackageMakesNoLink) {
    const Finding found = findingAbout("x](http://example.org)", "a-rule", Severity::Error, "A");
    EXPECT_EQ(runJson(oneFinding(found))["results"][0]["message"]["text"],
              "\\[x\\](http://example.org)\\] A");
}

TEST(FormatSarif, NameOfAFileIsEscapedByteForByte) {
    RunReport run = runOf({package({judgement({})})});
    run.packages[0].path = "a b/c:d\xff%.rpm";
    EXPECT_EQ(runJson(run)["artifacts"][0]["location"]["uri"], "a%20b/c%3Ad%FF%25.rpm");
}

TEST(FormatSarif, AFindingThatStandsForOthersOccursAsOften) {
    Finding left = finding("rule", Severity::Error, "549000 further findings are left out");
    left.count = 549'000;
    EXPECT_EQ(runJson(oneFinding(left))["results"][0]["occurrenceCount"], 549'000);
}

}  // namespace
