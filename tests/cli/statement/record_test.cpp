// Verdicts as in-toto Statements.
#include "cli/statement/record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/statement/stored_record.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using Json = nlohmann::json;

const std::string kDigest(64, 'a');

RunReport sample(std::vector<Finding> findings) {
    RunReport run = runOf({package({judgement(std::move(findings))})});
    run.packages[0].sha256 = kDigest;
    run.provenance.profiles = {{"regular", std::string(64, 'b')}};
    return run;
}

std::vector<NamedRecord> recordsOf(const RunReport& run) {
    std::vector<NamedRecord> records;
    forEachRecord(run, [&records](const NamedRecord& named) { records.push_back(named); });
    return records;
}

Record onlyRecord(const RunReport& run) {
    const std::vector<NamedRecord> records = recordsOf(run);
    EXPECT_EQ(records.size(), 1U);
    return records.empty() ? Record() : records[0].record;
}

TEST(Record, ResultFollowsTheVerdictAndTestsTheirFindings) {
    struct Case {
        const char* name;
        std::vector<Finding> findings;
        bool passes;
        std::string result;
        std::vector<std::string> failed;
        std::vector<std::string> warned;
    };
    Finding waived = finding("icon-missing", Severity::Error, "m");
    waived.standing = Standing::Waived;
    const Finding error = finding("path-not-allowed", Severity::Error, "m");
    const Finding warning = finding("empty-directory", Severity::Warning, "m");
    const Case cases[] = {
        {"nothing", {}, true, "PASSED", {}, {}},
        {"warning", {warning}, true, "WARNED", {}, {"empty-directory"}},
        {"errors",
         {error, error, warning},
         false,
         "FAILED",
         {"path-not-allowed"},
         {"empty-directory"}},
        {"waived", {waived}, true, "WARNED", {}, {"icon-missing"}},
        {"error that does not count", {error}, true, "WARNED", {}, {"path-not-allowed"}},
        {"remark of no rule",
         {finding("other-remark", Severity::Info, "m")},
         true,
         "PASSED",
         {},
         {}},
        {"rejected by no finding", {}, false, "FAILED", {}, {}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        RunReport run = sample(test.findings);
        run.packages[0].judgements[0].passes = test.passes;
        const Record record = onlyRecord(run);
        EXPECT_EQ(record.result, test.result);
        EXPECT_EQ(record.failedTests, test.failed);
        EXPECT_EQ(record.warnedTests, test.warned);
        EXPECT_THAT(record.passedTests, Contains("setuid-file"));
        for (const std::string& id : test.failed) {
            EXPECT_THAT(record.passedTests, Not(Contains(id)));
        }
    }
}

TEST(Record, WarningsFailWhereTheyAreToldTo) {
    RunReport run = sample({finding("empty-directory", Severity::Warning, "m")});
    run.packages[0].judgements[0].passes = false;
    run.provenance.failOn = "warning";
    EXPECT_THAT(onlyRecord(run).failedTests, ElementsAre("empty-directory"));
}

TEST(Record, OnlyRulesThatLookedPass) {
    RunReport run = sample({});
    EXPECT_THAT(onlyRecord(run).passedTests, Contains("source-package"));
    EXPECT_THAT(onlyRecord(run).passedTests, Not(Contains("package-not-signed")));
    EXPECT_THAT(onlyRecord(run).passedTests, Not(Contains("not-judged")));
    run.provenance.keyring = kDigest;
    EXPECT_THAT(onlyRecord(run).passedTests, Contains("package-not-signed"));
    run.provenance.integrity = false;
    EXPECT_THAT(onlyRecord(run).passedTests, Not(Contains("source-package")));
    run.packages[0].incomplete = "not unpacked";
    EXPECT_THAT(onlyRecord(run).passedTests, Contains("vendor-not-allowed"));
    EXPECT_THAT(onlyRecord(run).passedTests, Not(Contains("icon-missing")));
}

TEST(Record, ConfigurationIsAllThatDecides) {
    RunReport run = sample({});
    run.provenance.waivers = {std::string(64, 'c'), std::string(64, 'd')};
    run.provenance.baseline = std::string(64, 'e');
    run.provenance.keyring = std::string(64, 'f');
    const Record whole = onlyRecord(run);
    std::vector<std::string> names;
    for (const RecordedInput& input : whole.configuration) {
        names.push_back(input.name + " " + input.digest.substr(0, 1));
        EXPECT_EQ(input.digest.size(), 64U);
    }
    EXPECT_THAT(names, ElementsAre(testing::StartsWith("pkgvet "), "rules b",
                                   testing::StartsWith("options "), "keyring f", "waivers c",
                                   "waivers d", "baseline e"));
    run.packages[0].validationEnabled = false;
    EXPECT_NE(onlyRecord(run).configuration[2], whole.configuration[2]);
    EXPECT_EQ(profileIn(whole), "regular");
}

TEST(Record, WhatWasNotJudgedHasNone) {
    RunReport run = runOf({unreadable("a.rpm", "no")});
    run.provenance.profiles = {{"regular", kDigest}};
    EXPECT_THAT(recordsOf(run), IsEmpty());
    RunReport unknown = sample({});
    unknown.provenance.profiles = {{"regular", ""}};
    EXPECT_THAT(recordsOf(unknown), IsEmpty());
}

TEST(Record, NamesOfFilesLeadNowhereAndTellPackagesApart) {
    struct Case {
        std::string name;
        std::string file;
    };
    const Case cases[] = {
        {"org.example.app", "org.example.app"},
        {"../../etc/passwd", "%2E.%2F..%2Fetc%2Fpasswd"},
        {"..", "%2E."},
        {"", ""},
        {"a b\n\xff", "a%20b%0A%FF"},
        {std::string(4000, 'x'), std::string(100, 'x')},
    };
    for (const Case& test : cases) {
        RunReport run = sample({});
        run.packages[0].name = test.name;
        EXPECT_EQ(recordsOf(run)[0].file, test.file + "-" + kDigest + ".regular.intoto.json");
    }
    RunReport run = sample({});
    run.packages.push_back(run.packages[0]);
    EXPECT_EQ(recordsOf(run).size(), 1U);
    run.packages[1].sha256 = std::string(64, '0');
    EXPECT_EQ(recordsOf(run).size(), 2U);
    run.provenance.profiles.push_back({"mdm", kDigest});
    run.packages[1].judgements.push_back(judgement({}, "mdm"));
    EXPECT_EQ(recordsOf(run).size(), 3U);
}

TEST(Record, IsAStatementWithThePublicPredicate) {
    const Record record = onlyRecord(sample({finding("icon-missing", Severity::Error, "m")}));
    const std::string text = formatRecord(record);
    EXPECT_TRUE(text.starts_with(recordBeginning()));
    EXPECT_EQ(text.find('\n'), text.size() - 1);
    const Json json = Json::parse(text);
    EXPECT_EQ(json["_type"], "https://in-toto.io/Statement/v1");
    EXPECT_EQ(json["predicateType"], "https://in-toto.io/attestation/test-result/v0.1");
    EXPECT_EQ(
        json["subject"],
        Json::parse(R"([{"name": "org.example.app", "digest": {"sha256": ")" + kDigest + "\"}}]"));
    EXPECT_EQ(json["predicate"]["result"], "FAILED");
    EXPECT_EQ(json["predicate"]["failedTests"], Json::array({"icon-missing"}));
    EXPECT_EQ(json["predicate"]["configuration"][1],
              Json::parse(R"({"name": "rules", "digest": {"sha256": ")" + std::string(64, 'b') +
                          R"("}, "annotations": {"profile": "regular"}})"));
}

TEST(Record, IsReadBackAsItWasWritten) {
    const TemporaryDirectory directory;
    RunReport run = sample({finding("icon-missing", Severity::Error, "m")});
    run.packages[0].name = hostileBytes();
    run.provenance.waivers = {kDigest};
    const Record record = onlyRecord(run);
    std::vector<Fault> faults;
    const Record read = readRecord(directory.write("r", formatRecord(record)), &faults);
    EXPECT_THAT(faults, IsEmpty());
    EXPECT_THAT(differencesBetween(read, record), IsEmpty());
    EXPECT_EQ(formatRecord(read), formatRecord(record));
}

// Each field is checked, since anyone can write a record.
TEST(Record, WhatIsNotARecordIsAtFault) {
    const TemporaryDirectory directory;
    const Json sound = Json::parse(formatRecord(onlyRecord(sample({}))));
    const auto faultsOf = [&directory](const std::string& content) {
        std::vector<Fault> faults;
        readRecord(directory.write("r", content), &faults);
        return faults.size();
    };
    EXPECT_EQ(faultsOf(sound.dump()), 0U);
    for (
        const Json& patch : {
            R"([{"op": "replace", "path": "/_type", "value": "https://in-toto.io/Statement/v0.1"}])"_json,
            R"([{"op": "replace", "path": "/predicateType", "value": 1}])"_json,
            R"([{"op": "remove", "path": "/subject"}])"_json,
            R"([{"op": "replace", "path": "/subject", "value": []}])"_json,
            R"([{"op": "copy", "from": "/subject/0", "path": "/subject/1"}])"_json,
            R"([{"op": "replace", "path": "/subject/0/digest/sha256", "value": "AB"}])"_json,
            R"([{"op": "replace", "path": "/subject/0/digest", "value": "x"}])"_json,
            R"([{"op": "replace", "path": "/subject/0/name", "value": null}])"_json,
            R"([{"op": "remove", "path": "/predicate"}])"_json,
            R"([{"op": "replace", "path": "/predicate/result", "value": "GOOD"}])"_json,
            R"([{"op": "replace", "path": "/predicate/passedTests", "value": {}}])"_json,
            R"([{"op": "add", "path": "/predicate/warnedTests/0", "value": 3}])"_json,
            R"([{"op": "replace", "path": "/predicate/configuration/0", "value": 3}])"_json,
            R"([{"op": "remove", "path": "/predicate/configuration/0/digest"}])"_json,
            R"([{"op": "add", "path": "/predicate/configuration/1/annotations/x", "value": []}])"_json,
            R"([{"op": "replace", "path": "/predicate/configuration/1/annotations", "value": 1}])"_json,
            R"([{"op": "add", "path": "/predicate/time", "value": "now"}])"_json,
            R"([{"op": "add", "path": "/more", "value": 1}])"_json,
        }) {
        SCOPED_TRACE(patch.dump());
        EXPECT_GT(faultsOf(sound.patch(patch).dump()), 0U);
    }
    EXPECT_GT(faultsOf(""), 0U);
    EXPECT_GT(faultsOf("[]"), 0U);
    EXPECT_GT(faultsOf(std::string(100'000, '[')), 0U);
    EXPECT_GT(faultsOf("{\"_type\": \"" + std::string(std::size_t{2} << 20U, 'x') + "\"}"), 0U);
    std::vector<Fault> faults;
    readRecord(directory.path(), &faults);
    readRecord(directory / "none", &faults);
    EXPECT_EQ(faults.size(), 2U);
}

TEST(Record, DifferencesNameBothSides) {
    const Record found = onlyRecord(sample({finding("icon-missing", Severity::Error, "m")}));
    Record told = found;
    told.sha256 = std::string(64, '0');
    told.result = "PASSED";
    told.failedTests = {};
    told.passedTests.push_back("icon\033-missing");
    told.configuration[1].digest = std::string(64, '9');
    EXPECT_THAT(differencesBetween(told, found),
                ElementsAre("subject: org.example.app sha256 " + told.sha256 +
                                " in the record, org.example.app sha256 " + kDigest + " here",
                            "configuration: rules profile regular sha256 999999999999 in the "
                            "record, rules profile regular sha256 bbbbbbbbbbbb here",
                            "result: PASSED in the record, FAILED here",
                            "failed tests: none in the record, icon-missing here",
                            "passed tests: icon\\x1b-missing in the record, none here"));
    EXPECT_THAT(differencesBetween(found, found), IsEmpty());
}

}  // namespace
