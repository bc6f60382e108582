// JSON reports, held against their schema and read back.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/program/sample_runs.h"
#include "tests/support/program/schemas.h"

namespace {

using namespace pkgvet::cli;
using Json = nlohmann::json;

constexpr const char* kSchema = "docs/report.schema.json";

RunReport sample(const std::string& name) {
    for (const SampleRun& one : sampleRuns()) {
        if (one.name == name) {
            return one.run;
        }
    }
    ADD_FAILURE() << "no such sample: " << name;
    return {};
}

Json json(const RunReport& run, const ReportStyle& style = {}) {
    return Json::parse(reportOf(Format::Json, run, style));
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

bool isAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c == '\n' || (c >= ' ' && c <= '~'); });
}

TEST(FormatJson, EveryWayOutKeepsToTheSchema) {
    ReportStyle timings;
    timings.timings = true;
    std::vector<std::string> documents;
    for (const SampleRun& one : sampleRuns()) {
        documents.push_back(reportOf(Format::Json, one.run));
        documents.push_back(reportOf(Format::Json, one.run, timings));
        EXPECT_TRUE(isAscii(documents.back())) << one.name;
    }
    EXPECT_EQ(jsonFaults(kSchema, documents), "");
}

TEST(FormatJson, SchemaRefusesWhatIsNoReport) {
    for (const char* document : {"{}", "[]", R"({"schema_version": 1, "package": {}})"}) {
        EXPECT_NE(jsonFaults(kSchema, {document}), "") << document;
    }
}

TEST(FormatJson, EachLineKeepsToTheSchemaAndTheLastIsTheSummary) {
    std::vector<std::string> all;
    for (const SampleRun& one : sampleRuns()) {
        SCOPED_TRACE(one.name);
        const std::vector<std::string> lines = linesOf(reportOf(Format::Jsonl, one.run));
        ASSERT_EQ(lines.size(), one.run.packages.size() + 1);
        for (std::size_t i = 0; i < one.run.packages.size(); ++i) {
            EXPECT_EQ(Json::parse(lines[i])["package"], json(one.run)["packages"][i]);
        }
        EXPECT_EQ(Json::parse(lines.back())["summary"], json(one.run)["summary"]);
        all.insert(all.end(), lines.begin(), lines.end());
    }
    EXPECT_EQ(jsonFaults(kSchema, all), "");
}

TEST(FormatJson, HeadSaysWhatBecameOfTheRun) {
    const Json whole = json(sample("all of them"));
    EXPECT_EQ(whole["schema_version"], 1);
    EXPECT_EQ(whole["tool"]["name"], "pkgvet");
    EXPECT_EQ(whole["complete"], true);
    EXPECT_EQ(whole["summary"],
              Json::parse(R"({"packages":3,"accepted":1,"rejected":1,"not_judged":1})"));
    EXPECT_EQ(json(sample("partial"))["complete"], false);
    EXPECT_EQ(json(sample("waived and known"))["notices"],
              Json::parse(R"(["a waiver is never used"])"));
}

TEST(FormatJson, PackageCarriesAllThatIsKnown) {
    const Json report = json(sample("accepted"))["packages"][0];
    EXPECT_EQ(report, Json::parse(R"({"path":"app.rpm","name":"org.example.app","version":"1.0",
        "release":"1","arch":"noarch","sha256":")" +
                                  std::string(64, 'a') + R"(",
        "validation_enabled":true,"complete":true,"cause":null,"cause_code":null,"incomplete":null,"last_words":null,
        "passes":true,
        "judgements":[{"profile":"regular","meta_accepted":true,"content_accepted":true,
                       "accepted":true,"intact":true,"passes":true,"findings":[]}]})"));
}

TEST(FormatJson, PackageThatIsNotJudgedSaysWhy) {
    const Json report = json(sample("not judged"))["packages"][0];
    EXPECT_EQ(report["complete"], false);
    EXPECT_EQ(report["passes"], false);
    EXPECT_EQ(report["cause"], "not an RPM package");
    EXPECT_EQ(report["name"], nullptr);
    EXPECT_EQ(report["judgements"], Json::array());
}

TEST(FormatJson, PackageThatIsNotJudgedWholeSaysWhyAndIsRejected) {
    const Json run = json(sample("incomplete"));
    const Json report = run["packages"][0];
    EXPECT_EQ(run["summary"]["rejected"], 1);
    EXPECT_EQ(report["complete"], false);
    EXPECT_EQ(report["incomplete"], "the payload is irregular");
    EXPECT_EQ(report["cause"], nullptr);
    EXPECT_EQ(report["passes"], false);
    EXPECT_EQ(report["judgements"][0]["intact"], false);
}

TEST(FormatJson, FindingsCarryTheirStanding) {
    const Json findings =
        json(sample("waived and known"))["packages"][0]["judgements"][0]["findings"];
    ASSERT_EQ(findings.size(), 4U);
    EXPECT_EQ(findings[1], Json::parse(R"({"rule":"library-not-allowed","severity":"error",
        "title":"Program links a library that is not allowed",
        "help_uri":"https://pkgvet.example/docs/findings.md#library-not-allowed",
        "fingerprint":"f8bf628c8b427c1ebf6bf70a9d7eaefa",
        "subject":"libx.so.1","message":"[libx.so.1] Not allowed","standing":"waived",
        "reason":"until 2.0 <\"&'>"})"));
    EXPECT_EQ(findings[2]["standing"], "known");
    EXPECT_EQ(findings[3]["standing"], "counts");
    EXPECT_EQ(findings[3]["subject"], nullptr);
}

TEST(FormatJson, OwnVerdictStandsBesideTheOneAfterWaivers) {
    Judgement result = judgement({finding("a-rule", Severity::Error, "A")});
    result.passes = true;
    const Json report = json(runOf({package({result})}))["packages"][0]["judgements"][0];
    EXPECT_EQ(report["accepted"], false);
    EXPECT_EQ(report["passes"], true);
}

TEST(FormatJson, SecondsComeWithTimingsOnly) {
    ReportStyle timings;
    timings.timings = true;
    EXPECT_FALSE(json(sample("accepted"))["packages"][0].contains("seconds"));
    EXPECT_EQ(json(sample("accepted"), timings)["packages"][0]["seconds"], 0.25);
}

TEST(FormatJson, NamesThatDifferInBytesThatAreNoTextStayApart) {
    const auto subjects = [](const std::string& subject) {
        const Finding found = findingAbout(subject, "a-rule", Severity::Error, "A");
        return json(
            runOf({package({judgement({found})})}))["packages"][0]["judgements"][0]["findings"][0];
    };
    EXPECT_EQ(subjects("a\xff")["subject"], subjects("a\xfe")["subject"]);
    EXPECT_EQ(subjects("a\xff")["subject_escaped"], "a\\xff");
    EXPECT_EQ(subjects("a\xfe")["subject_escaped"], "a\\xfe");
    EXPECT_EQ(subjects("\\xff\xff")["subject_escaped"], "\\\\xff\\xff");
    EXPECT_EQ(subjects("a\xff")["message_escaped"], "[a\\xff] A");
    EXPECT_FALSE(subjects("a\\xff").contains("subject_escaped"));
    PackageReport report = package({});
    report.path = "\xfe.rpm";
    EXPECT_EQ(json(runOf({report}))["packages"][0]["path_escaped"], "\\xfe.rpm");
}

TEST(FormatJson, RunSaysHowItsVerdictsCameAbout) {
    RunReport run = runOf({});
    const std::string digest(64, 'd');
    run.provenance = {.profiles = {{"mdm", digest}},
                      .validation = "on",
                      .integrity = false,
                      .failOn = "warning",
                      .keyring = digest,
                      .waivers = {digest, ""},
                      .baseline = digest,
                      .limits = {1.5, 2, 3, 4, 5, 6}};
    const Json expected = Json::parse(R"({"profiles":[{"name":"mdm","rules_digest":")" + digest +
                                      R"("}],"validation":"on","integrity":false,"keyring":")" +
                                      digest + R"(","fail_on":"warning","waivers":[")" + digest +
                                      R"(",null],"baseline":")" + digest +
                                      R"(","limits":{"timeout":1.5,"cpu_time":2,"max_unpacked":3,
        "max_files":4,"memory":5,"max_report":6}})");
    EXPECT_EQ(json(run)["provenance"], expected);
    EXPECT_EQ(jsonFaults(kSchema, {reportOf(Format::Json, run)}), "");
}

TEST(FormatJson, BytesThatAreNoTextAreReplaced) {
    PackageReport report = package({});
    report.path = "a\xff\x1b\u202e.rpm";
    EXPECT_NE(reportOf(Format::Json, runOf({report})).find(R"("a\ufffd\u001b\u202e.rpm")"),
              std::string::npos);
}

TEST(FormatJson, AFindingThatStandsForOthersSaysForHowMany) {
    Finding left = finding("rule", Severity::Error, "549000 further findings are left out");
    left.count = 549'000;
    const RunReport run =
        runOf({package({judgement({finding("rule", Severity::Error, "text"), left})})});
    EXPECT_EQ(jsonFaults(kSchema, {reportOf(Format::Json, run)}), "");
    const Json findings = json(run)["packages"][0]["judgements"][0]["findings"];
    EXPECT_FALSE(findings[0].contains("count"));
    EXPECT_EQ(findings[1]["count"], 549'000);
}

}  // namespace
