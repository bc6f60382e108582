// Reports read back, and reports that lie.
#include "cli/records/report_reader.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/readable_runs.h"

namespace {

using namespace pkgvet::cli;
using Json = nlohmann::ordered_json;

constexpr Format kFormats[] = {Format::Text,     Format::Concise, Format::Json,   Format::Jsonl,
                               Format::Sarif,    Format::Junit,   Format::Github, Format::Gitlab,
                               Format::Markdown, Format::Html};

RunReport readBack(const std::string& path) {
    ReportReader reader(path);
    std::vector<PackageReport> packages;
    while (std::optional<PackageReport> package = reader.next()) {
        packages.push_back(*package);
    }
    RunReport run = reader.run();
    run.packages = packages;
    return run;
}

// What is wrong with a report, without the directory that it lies in.
std::string faultOf(const std::string& content) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("r", content);
    try {
        static_cast<void>(readBack(path));
    } catch (const std::runtime_error& error) {
        return std::string(error.what()).substr(path.size() - 1);
    }
    return "nothing";
}

TEST(ReportReader, EveryFormatOfWhatComesBackIsThatOfTheRun) {
    const TemporaryDirectory directory;
    ReportStyle style;
    style.timings = true;
    for (const SampleRun& one : readableRuns()) {
        for (const Format source : {Format::Json, Format::Jsonl}) {
            const std::string path = directory.write("report", reportOf(source, one.run, style));
            const RunReport back = readBack(path);
            for (const Format format : kFormats) {
                SCOPED_TRACE(one.name + std::to_string(static_cast<int>(format)));
                EXPECT_EQ(reportOf(format, back, style), reportOf(format, one.run, style));
            }
        }
    }
}

TEST(ReportReader, ShardsComeBack) {
    const TemporaryDirectory directory;
    RunReport run = runOf({package({judgement({})})});
    run.packages[0].position = 3;
    run.shard = Shard{2, 4, 7, std::string(64, 'f')};
    const RunReport back = readBack(directory.write("report", reportOf(Format::Json, run)));
    ASSERT_TRUE(back.shard.has_value());
    EXPECT_EQ(back.shard->number, 2U);
    EXPECT_EQ(back.shard->of, 4U);
    EXPECT_EQ(back.shard->packages, 7U);
    EXPECT_EQ(back.shard->input, std::string(64, 'f'));
    EXPECT_EQ(back.packages[0].position, 3U);
}

TEST(ReportReader, PackagesCanBeReadOnceMore) {
    const TemporaryDirectory directory;
    const RunReport run = readableRuns().back().run;
    for (const Format source : {Format::Json, Format::Jsonl}) {
        ReportReader reader(directory.write("report", reportOf(source, run)));
        std::vector<RecordPlace> places;
        while (reader.next()) {
            places.push_back(reader.place());
        }
        ASSERT_EQ(places.size(), 2U);
        EXPECT_EQ(reader.at(places[1]).path, run.packages[1].path);
        EXPECT_EQ(reader.at(places[0]).path, run.packages[0].path);
    }
}

TEST(ReportReader, WhatEndsBeforeItsLastLineIsCutShort) {
    const TemporaryDirectory directory;
    const std::string whole = reportOf(Format::Jsonl, readableRuns()[4].run);
    const std::size_t last = whole.rfind('\n', whole.size() - 2) + 1;
    for (const std::size_t size : {last, last + 1, whole.size() - 2}) {
        ReportReader reader(directory.write("report", whole.substr(0, size)));
        int packages = 0;
        while (reader.next()) {
            ++packages;
        }
        EXPECT_EQ(packages, 3);
        EXPECT_TRUE(reader.isCutShort());
        EXPECT_EQ(reader.sizeOfLines(), last);
        EXPECT_THROW(reader.run(), std::runtime_error);
    }
    EXPECT_EQ(faultOf(""), "r: is cut short");
}

struct Lie {
    const char* place;  // JSON pointer
    Json value;
    const char* fault;  // behind the position
};

// A report of one package in which one value is another.
std::string lying(const Lie& lie) {
    RunReport run = runOf({package({judgement(
        {findingAbout("libx.so.1", "library-not-allowed", Severity::Error, "Not allowed")})})});
    Json json = Json::parse(reportOf(Format::Json, run));
    json[Json::json_pointer(lie.place)] = lie.value;
    return json.dump(2);
}

TEST(ReportReader, EveryMemberIsLookedAt) {
    const Json digest = std::string(64, 'x');
    const Lie lies[] = {
        {"/schema_version", 2,
         "the schema version is not that of a report that this version can read"},
        {"/tool/name", "other", "\"tool.name\" is not a word that can stand here"},
        {"/provenance/profiles", 1, "\"provenance.profiles\" is not an array"},
        {"/provenance/profiles/0/rules_digest", digest,
         "\"provenance.profiles[0].rules_digest\" is not a SHA-256 in hexadecimal"},
        {"/provenance/integrity", 1, "\"provenance.integrity\" is not true or false"},
        {"/provenance/fail_on", "info", "\"provenance.fail_on\" is not a word that can stand here"},
        {"/provenance/waivers/0", digest, "\"provenance.waivers\" does not hold digests alone"},
        {"/provenance/limits/cpu_time", -1,
         "\"provenance.limits.cpu_time\" is not a whole number from 0 to 4294967295"},
        {"/provenance/limits/timeout", "1",
         "\"provenance.limits.timeout\" is not a number of seconds"},
        {"/sandbox", "sand", "\"sandbox\" is not a word that can stand here"},
        {"/complete", nullptr, "\"complete\" is not true or false"},
        {"/summary/accepted", 1, "\"summary.packages\" is not the sum of the others"},
        {"/notices/0", 1, "\"notices\" does not hold texts alone"},
        {"/shard",
         {{"number", 3}, {"of", 2}, {"packages", 1}, {"input", nullptr}},
         "\"shard.number\" is not a whole number from 1 to 2"},
        {"/packages", Json::object(), "\"packages\" is not an array"},
        {"/packages/0", 1, "1 is not an object"},
        {"/packages/0/name", 7, "7 is not a string"},
        {"/packages/0/name_escaped", "\\x4",
         "\"\\\\x4\" is not an escaped form of the member beside it"},
        {"/packages/0/name_escaped", "\\xff",
         "\"\\\\xff\" is not an escaped form of the member beside it"},
        {"/packages/0/sha256", "A", "\"A\" is not a SHA-256 in hexadecimal"},
        {"/packages/0/position", 0, "0 is not a whole number from 1 to 4294967295"},
        {"/packages/0/seconds", -1, "-1 is not a number of seconds"},
        {"/packages/0/complete", false, "false does not follow from the other members"},
        {"/packages/0/passes", true, "true does not follow from the other members"},
        {"/packages/0/cause", "why", "null does not follow from the other members"},
        {"/packages/0/cause_code", "other", "\"other\" is not a word that can stand here"},
        {"/packages/0/judgements", Json::array(),
         "\"judgements\" does not follow from the other members"},
        {"/packages/0/judgements/0/accepted", true, "true does not follow from the other members"},
        {"/packages/0/judgements/0/findings/0/rule", "other",
         "\"other\" is not the id of a rule that this version knows"},
        {"/packages/0/judgements/0/findings/0/severity", "bad",
         "\"bad\" is not a word that can stand here"},
        {"/packages/0/judgements/0/findings/0/subject", "y",
         "does not follow from the other members"},
        {"/packages/0/judgements/0/profile", "mdm",
         "packages are not judged under the profiles of the run"},
    };
    for (const Lie& lie : lies) {
        const std::string fault = faultOf(lying(lie));
        EXPECT_EQ(fault.find("r:"), 0U) << lie.place;
        EXPECT_TRUE(fault.ends_with(lie.fault)) << lie.place << ": " << fault;
    }
    EXPECT_EQ(faultOf(lying({"/more", 1, ""})), "nothing");
}

TEST(ReportReader, FaultsHaveLineAndColumn) {
    EXPECT_EQ(faultOf(lying({"/packages/0/arch", 1, ""})).substr(0, 8), "r:44:15:");
    struct Case {
        std::string content;
        std::string fault;
    };
    const std::string line = "{\"schema_version\": 1, \"package\": ";
    const Case cases[] = {
        {"[1]", "r:1:1: an object should stand here"},
        {"{\"schema_version\": 1,\n \"package\": {\"path\": tru}}\n",
         "r:2:25: is not JSON: syntax error while parsing value - invalid literal; last read: "
         "'\"path\": tru}'"},
        {line + "{\"path\": 1, \"path\": 2}}\n", "r:1:46: \"path\" stands there twice"},
        {"{\"a\": 1, \"a\": 2}", "r:1:15: \"a\" stands there twice"},
        {line + "{}}\n", "r:1:34: \"path\" is missing"},
        {"{\"package\": {}}\n", "r: \"schema_version\" is missing"},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(faultOf(test.content), test.fault) << test.content;
    }
}

TEST(ReportReader, NothingMayStandBehindTheEnd) {
    const RunReport run = runOf({package({judgement({})})});
    const std::string lines = reportOf(Format::Jsonl, run);
    EXPECT_EQ(faultOf(lines + lines), "r:3:19: there is more behind the end of the report");
    const std::string first = lines.substr(0, lines.find('\n') + 1);
    EXPECT_EQ(faultOf(first + lines),
              "r: the summary does not count the packages that the report holds");
}

}  // namespace
