// SARIF reports that are too large for their readers.
#include "cli/report/sarif_documents.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/program/sample_runs.h"
#include "tests/support/program/schemas.h"

namespace {

using namespace pkgvet::cli;
using Json = nlohmann::json;

// A run with warnings on a, b, ... and behind them a setuid file and an error.
RunReport runWith(std::size_t warnings) {
    std::vector<Finding> findings;
    for (std::size_t i = 0; i < warnings; ++i) {
        findings.push_back(findingAbout(std::string(1, static_cast<char>('a' + i % 26)),
                                        "file-remark", Severity::Warning, "A"));
    }
    findings.push_back(findingAbout("e", "icon-missing", Severity::Error, "A"));
    findings.push_back(findingAbout("s", "setuid-file", Severity::Error, "A"));
    return runOf({package({judgement(findings)})});
}

std::string subjectsOf(const std::string& document) {
    std::string subjects;
    const Json json = Json::parse(document);
    for (const Json& result : json["runs"][0]["results"]) {
        subjects += result["locations"][0]["logicalLocations"][0]["name"].get<std::string>();
    }
    return subjects;
}

// The documents of a run with what is said of them.
struct Written {
    std::vector<std::string> texts;
    SarifDocuments documents;
};

Written written(const RunReport& run, std::size_t most, const SarifLimits& limits) {
    Written result;
    const auto receive = [&result](const Spool& document) {
        result.texts.emplace_back();
        document.read([&result](std::string_view piece) { result.texts.back() += piece; });
    };
    result.documents = writeSarifDocuments(run, {}, most, receive, limits);
    EXPECT_EQ(result.documents.documents, result.texts.size());
    return result;
}

std::vector<std::string> subjectsOf(const Written& documents) {
    std::vector<std::string> all;
    for (const std::string& text : documents.texts) {
        all.push_back(subjectsOf(text));
    }
    return all;
}

TEST(SarifDocuments, WhatFitsIsOneInTheOrderOfThePackages) {
    const Written documents = written(runWith(2), kAllDocuments, {.results = 4});
    EXPECT_EQ(subjectsOf(documents), std::vector<std::string>{"abes"});
    EXPECT_EQ(documents.documents.told, 4U);
    EXPECT_EQ(documents.documents.results, 4U);
}

TEST(SarifDocuments, WorstComeFirstWhereNotAllFit) {
    const Written documents = written(runWith(3), 1, {.results = 3});
    EXPECT_EQ(subjectsOf(documents), std::vector<std::string>{"sea"});
    EXPECT_EQ(documents.documents.told, 3U);
    EXPECT_EQ(documents.documents.results, 5U);
}

TEST(SarifDocuments, AllAreToldInAsManyAsItTakes) {
    const Written documents = written(runWith(3), kAllDocuments, {.results = 2});
    EXPECT_EQ(subjectsOf(documents), (std::vector<std::string>{"se", "ab", "c"}));
    EXPECT_EQ(documents.documents.told, 5U);
    EXPECT_EQ(jsonFaults("tests/schemas/sarif-used.schema.json", documents.texts), "");
}

TEST(SarifDocuments, EachIsAnAnalysisOfItsOwn) {
    const Written documents = written(runWith(2), kAllDocuments, {.results = 2});
    ASSERT_EQ(documents.texts.size(), 2U);
    const auto category = [&](std::size_t i) {
        return Json::parse(documents.texts[i])["runs"][0]["automationDetails"]["id"];
    };
    EXPECT_EQ(category(0), "pkgvet/regular/");
    EXPECT_EQ(category(1), "pkgvet/regular/2/");
}

// What two thousand alike findings take, and their text, differ by far.
TEST(SarifDocuments, SizeThatCountsIsThatOfThePackedDocument) {
    const RunReport run = runWith(2000);
    const std::size_t size = reportOf(Format::Sarif, run).size();
    ASSERT_GT(size, 1'000'000U);
    EXPECT_EQ(written(run, kAllDocuments, {.packedBytes = size / 4}).texts.size(), 1U);
    const Written small = written(run, kAllDocuments, {.packedBytes = 12'000});
    EXPECT_GT(small.texts.size(), 2U);
    EXPECT_EQ(small.documents.told, 2002U);
    EXPECT_EQ(subjectsOf(small).front().substr(0, 3), "sea");
}

TEST(SarifDocuments, SingleResultIsToldWhateverItsSize) {
    const Written documents = written(runWith(1), kAllDocuments, {.packedBytes = 10});
    EXPECT_EQ(subjectsOf(documents), (std::vector<std::string>{"s", "e", "a"}));
}

TEST(SarifDocuments, RunWithoutResultsIsOneDocument) {
    EXPECT_EQ(written(runOf({}), kAllDocuments, {.packedBytes = 10}).texts.size(), 1U);
}

}  // namespace
