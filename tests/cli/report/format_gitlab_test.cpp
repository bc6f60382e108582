// Code Quality reports of GitLab, compared whole.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;
using Json = nlohmann::json;

Json gitlab(const RunReport& run) {
    return Json::parse(reportOf(Format::Gitlab, run));
}

Json sample(const std::string& name) {
    for (const SampleRun& one : sampleRuns()) {
        if (one.name == name) {
            return gitlab(one.run);
        }
    }
    return {};
}

TEST(FormatGitlab, FindingSaysWhatAndWhere) {
    const Json report = sample("rejected");
    ASSERT_EQ(report.size(), 4U);
    EXPECT_EQ(report[1], Json::parse(R"({"description": "[libx.so.1] Not allowed",
        "check_name": "library-not-allowed", "fingerprint": "f8bf628c8b427c1ebf6bf70a9d7eaefa", "severity": "major",
        "location": {"path": "app.rpm", "lines": {"begin": 1}}})"));
    EXPECT_EQ(report[0]["severity"], "blocker");
    EXPECT_EQ(report[2]["severity"], "minor");
    EXPECT_EQ(report[3]["severity"], "info");
}

TEST(FormatGitlab, WhatDoesNotCountIsLeftOut) {
    EXPECT_EQ(sample("waived and known").size(), 2U);
}

TEST(FormatGitlab, WhatWasNotJudgedDoesNotLookClean) {
    EXPECT_EQ(sample("accepted"), Json::array());
    const Json report = sample("not judged");
    ASSERT_EQ(report.size(), 1U);
    EXPECT_EQ(report[0]["check_name"], "not-judged");
    EXPECT_EQ(report[0]["severity"], "blocker");
    EXPECT_EQ(sample("incomplete")[0]["check_name"], "incomplete");
    EXPECT_EQ(sample("partial")[0]["check_name"], "partial");
}

TEST(FormatGitlab, FingerprintsAreUnique) {
    const std::vector<Finding> findings(3, finding("a-rule", Severity::Error, "A"));
    std::set<std::string> fingerprints;
    for (const Json& one : gitlab(runOf({package({judgement(findings)})}))) {
        fingerprints.insert(one["fingerprint"].get<std::string>());
    }
    EXPECT_EQ(fingerprints.size(), 3U);
}

TEST(FormatGitlab, PathIsThatInTheRepository) {
    RunReport run = runOf({package({judgement({finding("a-rule", Severity::Error, "A")})})});
    run.packages[0].path = "./out/app.rpm";
    EXPECT_EQ(gitlab(run)[0]["location"]["path"], "out/app.rpm");
}

}  // namespace
