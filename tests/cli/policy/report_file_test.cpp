// Reports in JSON as they come back.
#include "cli/policy/report_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> faultsOf(const std::string& content) {
    const TemporaryDirectory directory;
    std::vector<Fault> faults;
    readReport(directory.write("r.json", content), &faults);
    std::vector<std::string> lines;
    for (const Fault& fault : faults) {
        lines.push_back(fault.key + "|" + fault.cause);
    }
    return lines;
}

TEST(ReportFile, FindingsComeBack) {
    const TemporaryDirectory directory;
    const std::vector<Finding> findings = {
        findingAbout("libx.so.1", "library-not-allowed", Severity::Error, "Not allowed"),
        finding("other-remark", Severity::Info, "By the way")};
    Judgement result = judgement(findings);
    result.findings[1].standing = Standing::Known;
    std::vector<Fault> faults;
    const std::vector<ReportedFinding> read = readReport(
        directory.write("r.json", reportOf(Format::Json, runOf({package({result})}))), &faults);
    EXPECT_THAT(faults, IsEmpty());
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0].package, "org.example.app");
    EXPECT_EQ(read[0].rule, "library-not-allowed");
    EXPECT_EQ(read[0].severity, "error");
    EXPECT_EQ(read[0].subject, "libx.so.1");
    EXPECT_TRUE(read[0].counts);
    EXPECT_EQ(read[1].subject, "");
    EXPECT_FALSE(read[1].counts);
}

TEST(ReportFile, EveryRunCanBeRead) {
    const TemporaryDirectory directory;
    for (const SampleRun& sample : sampleRuns()) {
        std::vector<Fault> faults;
        readReport(directory.write("r.json", reportOf(Format::Json, sample.run)), &faults);
        EXPECT_THAT(faults, IsEmpty()) << sample.name;
    }
}

TEST(ReportFile, WhatIsNotAReportIsRefused) {
    EXPECT_THAT(faultsOf("[]"), ElementsAre("|holds no JSON object"));
    EXPECT_THAT(faultsOf("{}"),
                ElementsAre("schema_version|is not that of a report that this version can read"));
    EXPECT_THAT(faultsOf(R"({"schema_version": 1})"), ElementsAre("packages|is missing"));
    EXPECT_THAT(faultsOf(R"({"schema_version": 1, "packages": [{"name": "a", "judgements":
                             [{"findings": [{"rule": 1}]}]}]})"),
                ElementsAre("packages[0].judgements[0].findings[0].rule|is not a string",
                            "packages[0].judgements[0].findings[0].severity|is missing",
                            "packages[0].judgements[0].findings[0].standing|is missing"));
}

}  // namespace
