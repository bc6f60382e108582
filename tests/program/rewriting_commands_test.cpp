// `pkgvet report` and `pkgvet merge`: reports out of reports, byte for byte those of the run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/support/base/child_process.h"
#include "tests/support/program/corpus.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class RewritingCommands : public testing::Test {
protected:
    static void SetUpTestSuite() { corpus_ = new Corpus; }
    static void TearDownTestSuite() { delete corpus_; }

    static const Corpus& corpus() { return *corpus_; }

    // The paths of the corpus behind other arguments.
    static std::vector<std::string> onCorpus(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), corpus().paths().begin(), corpus().paths().end());
        return arguments;
    }

    // A report of the whole corpus.
    std::string written(const std::string& format) const {
        const std::string path = own_ / ("whole." + format);
        corpus().check(onCorpus({"-o", format + ":" + path, "-q"}));
        return path;
    }

    std::string shard(int number, int of, const std::vector<std::string>& more = {}) const {
        const std::string path = own_ / ("shard-" + std::to_string(number) + ".jsonl");
        std::vector<std::string> arguments = {"-q", "-o", "jsonl:" + path, "--shard",
                                              std::to_string(number) + "/" + std::to_string(of)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        corpus().check(onCorpus(arguments));
        return path;
    }

    std::vector<std::string> shards(int of) const {
        std::vector<std::string> paths;
        for (int number = of; number > 0; --number) {
            paths.push_back(shard(number, of));
        }
        return paths;
    }

    static ProgramResult merge(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "merge");
        return runPkgvet(arguments);
    }

    TemporaryDirectory own_;

private:
    static Corpus* corpus_;
};

Corpus* RewritingCommands::corpus_ = nullptr;

TEST_F(RewritingCommands, ReportIsThatOfTheRunInEveryFormat) {
    for (const std::string source : {"json", "jsonl"}) {
        const std::string path = written(source);
        for (const std::string& format : allFormats()) {
            SCOPED_TRACE(source + " to " + format);
            const ProgramResult run = corpus().check(onCorpus({"--format", format}));
            const ProgramResult again = runPkgvet({"report", "--format", format, path});
            EXPECT_EQ(run.status, 3);
            EXPECT_EQ(again.status, 0);
            EXPECT_EQ(again.output, run.output);
        }
    }
}

TEST_F(RewritingCommands, ReportWritesTheFilesOfTheRun) {
    const std::string path = written("jsonl");
    std::vector<std::string> run = {"-q"};
    std::vector<std::string> again = {"report", "-q", path};
    for (const std::string& format : allFormats()) {
        run.insert(run.end(), {"-o", format + ":" + own_ / ("run." + format)});
        again.insert(again.end(), {"-o", format + ":" + own_ / ("again." + format)});
    }
    corpus().check(onCorpus(run));
    EXPECT_EQ(runPkgvet(again).status, 0);
    for (const std::string& format : allFormats()) {
        EXPECT_EQ(readFile(own_ / ("again." + format)), readFile(own_ / ("run." + format)))
            << format;
    }
}

TEST_F(RewritingCommands, OptionsOfTextWorkOnReports) {
    const std::string path = written("json");
    for (const std::vector<std::string>& options :
         std::vector<std::vector<std::string>>{{"-q"}, {"--explain"}, {"--show-waived"}}) {
        std::vector<std::string> again = {"report", path};
        again.insert(again.end(), options.begin(), options.end());
        EXPECT_EQ(runPkgvet(again).output, corpus().check(onCorpus(options)).output);
    }
}

TEST_F(RewritingCommands, ReportWithoutTimesSaysSo) {
    constexpr const char* kUntimed =
        "pkgvet: the time that 1 package took is not known: the run was without --timings\n";
    const std::string package = corpus().packages() + "/a.rpm";
    const std::string without = own_ / "without.json";
    const std::string with = own_ / "with.json";
    corpus().check({"-q", "-o", "json:" + without, package});
    corpus().check({"-q", "--timings", "-o", "json:" + with, package});
    for (const std::string format : {"text", "json", "sarif", "junit"}) {
        const ProgramResult untimed =
            runPkgvet({"report", "--timings", "--format", format, without});
        EXPECT_EQ(untimed.status, 0);
        EXPECT_EQ(untimed.output, runPkgvet({"report", "--format", format, without}).output);
        EXPECT_THAT(untimed.errors, HasSubstr(kUntimed));
        const ProgramResult timed = runPkgvet({"report", "--timings", "--format", format, with});
        EXPECT_THAT(timed.errors, Not(HasSubstr(kUntimed)));
        EXPECT_NE(timed.output, untimed.output);
    }
}

TEST_F(RewritingCommands, SeveralReportsOfTheSameRulesAreOne) {
    const std::string a = own_ / "a.json";
    const std::string b = own_ / "b.json";
    const std::string d = own_ / "d.json";
    const std::string all = own_ / "all.json";
    const std::string first = corpus().packages() + "/a.rpm";
    const std::string second = corpus().packages() + "/d.rpm";
    corpus().check({"-q", "-o", "json:" + a, first});
    corpus().check({"-q", "-o", "json:" + b, second});
    const ProgramResult both = corpus().check({"--format", "jsonl", first, second});
    const ProgramResult joined = runPkgvet({"report", "--format", "concise", a, b});
    EXPECT_EQ(joined.status, 0);
    EXPECT_EQ(joined.output, corpus().check({"--format", "concise", first, second}).output);
    corpus().check({"-q", "-o", "json:" + d, "--timeout", "99", second});
    const ProgramResult refused = runPkgvet({"report", a, d});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.output, "");
    EXPECT_THAT(refused.errors, HasSubstr(d + ": was judged with other options"));
}

TEST_F(RewritingCommands, WhatIsNotAReportIsAnErrorBeforeAnythingIsWritten) {
    const std::string out = own_ / "out.json";
    const std::string cut = own_ / "cut.jsonl";
    const std::string whole = readFile(written("jsonl"));
    writeFile(cut, whole.substr(0, whole.size() / 2));
    for (const std::string& path : {own_ / "missing", cut, corpus().paths()[0]}) {
        const ProgramResult result = runPkgvet({"report", "-o", "json:" + out, path});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors.find("pkgvet: " + path), 0U) << result.errors;
        EXPECT_FALSE(std::filesystem::exists(out));
    }
}

TEST_F(RewritingCommands, NoReportTakesThePlaceOfItsSource) {
    const std::string path = written("json");
    const std::string before = readFile(path);
    for (const char* command : {"report", "merge"}) {
        EXPECT_EQ(runPkgvet({command, "-o", "jsonl:" + path, path}).status, 2);
        EXPECT_EQ(readFile(path), before);
    }
}

TEST_F(RewritingCommands, ShardsMergeIntoTheReportOfTheWholeRun) {
    const std::vector<std::string> parts = shards(4);
    for (const std::string& format : allFormats()) {
        SCOPED_TRACE(format);
        std::vector<std::string> arguments = parts;
        arguments.insert(arguments.end(), {"--format", format});
        const ProgramResult run = corpus().check(onCorpus({"--format", format}));
        const ProgramResult merged = merge(arguments);
        EXPECT_EQ(merged.status, run.status);
        EXPECT_EQ(merged.output, run.output);
    }
}

TEST_F(RewritingCommands, MoreShardsThanPackagesMergeAsWell) {
    std::vector<std::string> arguments = shards(12);
    arguments.insert(arguments.end(), {"--format", "json"});
    EXPECT_EQ(merge(arguments).output, corpus().check(onCorpus({"--format", "json"})).output);
}

TEST_F(RewritingCommands, MoreShardsMergeThanFilesCanBeOpen) {
    constexpr int kShards = 32;
    const std::vector<std::string> reports = shards(kShards);
    const std::string whole = readFile(written("jsonl"));
    EXPECT_TRUE(holdsInChild([&] {
        const struct rlimit few { kShards / 2, kShards / 2 };
        setrlimit(RLIMIT_NOFILE, &few);
        std::vector<std::string> arguments = {"--format", "jsonl"};
        arguments.insert(arguments.end(), reports.begin(), reports.end());
        return merge(arguments).output == whole;
    }));
}

TEST_F(RewritingCommands, ShardsThatHaveToBeRunAgainAreNamed) {
    std::vector<std::string> parts = shards(4);
    const std::string torn = readFile(parts[1]);
    writeFile(parts[1], torn.substr(0, torn.size() - 10));  // the third
    shard(2, 4, {"--timeout", "99"});                       // the second
    std::filesystem::remove(parts[3]);                      // the first
    parts.push_back(parts[0]);
    const ProgramResult result = merge(parts);
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.output, "");
    for (const std::string& line :
         {parts[1] + ": is cut short\n", parts[3] + ": No such file or directory\n",
          parts[0] + ": shard 4 of 4 is there twice\n"}) {
        EXPECT_THAT(result.errors, HasSubstr("pkgvet: " + line));
    }
    parts.insert(parts.begin(), "--missing");
    const ProgramResult missing = merge(parts);
    EXPECT_EQ(missing.status, 3);
    EXPECT_THAT(missing.output, HasSubstr("1,"));
    EXPECT_THAT(missing.output, HasSubstr("3"));
    // One of the two that differ is kept.
    EXPECT_THAT(missing.output, testing::AnyOf("1,2,3\n", "1,3,4\n"));
}

TEST_F(RewritingCommands, NothingIsMissingFromAWholeSet) {
    std::vector<std::string> parts = shards(2);
    parts.insert(parts.begin(), "--missing");
    const ProgramResult result = merge(parts);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "");
}

TEST_F(RewritingCommands, ReportOfAWholeRunIsNotAShard) {
    const ProgramResult result = merge({written("json")});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("is not the report of a shard"));
}

TEST_F(RewritingCommands, ShardSaysWhichItIsAndTakesItsShareOfTheSortedInput) {
    const auto json = nlohmann::json::parse(
        corpus().check({"--shard", "2/3", "--format", "json", corpus().packages()}).output);
    EXPECT_EQ(json["shard"]["number"], 2);
    EXPECT_EQ(json["shard"]["of"], 3);
    EXPECT_EQ(json["shard"]["packages"], 8);
    ASSERT_EQ(json["packages"].size(), 3U);
    EXPECT_EQ(json["packages"][0]["path"], corpus().packages() + "/b.rpm");
    EXPECT_EQ(json["packages"][1]["path"], corpus().packages() + "/e.rpm");
    EXPECT_EQ(json["packages"][2]["position"], 8);
}

TEST_F(RewritingCommands, ShardsOutOfRangeAreErrors) {
    for (const char* shard : {"0/2", "3/2", "1", "1/0", "a/2", "1/2x", "-1/2", "1/100001"}) {
        const ProgramResult result = corpus().check({"--shard", shard, corpus().packages()});
        EXPECT_EQ(result.status, 2) << shard;
        EXPECT_THAT(result.errors, HasSubstr("is not of the form K/N")) << shard;
    }
}

}  // namespace
