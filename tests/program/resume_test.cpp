// Runs that are killed, and runs that go on where they stopped.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/program/corpus.h"
#include "tests/support/program/running_program.h"

namespace {

using testing::HasSubstr;

class Resume : public testing::Test {
protected:
    static void SetUpTestSuite() { corpus_ = new Corpus; }
    static void TearDownTestSuite() { delete corpus_; }

    static const Corpus& corpus() { return *corpus_; }

    ProgramResult resume(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments = {"-q", "--resume", file()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        arguments.push_back(corpus().packages());
        return corpus().check(arguments);
    }

    std::string file() const { return own_ / "night.jsonl"; }
    static std::string whole() {
        return corpus().check({"--format", "jsonl", corpus().packages()}).output;
    }

    std::ptrdiff_t lines() const {
        if (!std::filesystem::exists(file())) {
            return 0;
        }
        const std::string content = readFile(file());
        return std::count(content.begin(), content.end(), '\n');
    }

    TemporaryDirectory own_;

private:
    static Corpus* corpus_;
};

Corpus* Resume::corpus_ = nullptr;

TEST_F(Resume, FirstRunWritesTheReport) {
    EXPECT_EQ(resume().status, 3);
    EXPECT_EQ(readFile(file()), whole());
}

TEST_F(Resume, RunThatWasKilledAnywhereGoesOn) {
    const std::string expected = whole();
    for (const std::ptrdiff_t point : {0, 1, 3, 6}) {
        SCOPED_TRACE(point);
        std::filesystem::remove(file());
        RunningProgram run(
            corpus().command({"-q", "--jobs", "1", "--resume", file(), corpus().packages()}));
        ASSERT_TRUE(waitUntil([&] { return lines() >= point; }));
        run.kill();
        run.wait();
        EXPECT_EQ(resume().status, 3);
        EXPECT_EQ(readFile(file()), expected);
    }
}

TEST_F(Resume, WhatIsThereIsNotJudgedAgain) {
    resume();
    // What a run finds out anew could not be this.
    std::string changed = readFile(file());
    const std::string from = "\"release\":\"1\"";
    ASSERT_NE(changed.find(from), std::string::npos);
    changed.replace(changed.find(from), from.size(), "\"release\":\"taken over\"");
    writeFile(file(), changed);
    resume();
    EXPECT_EQ(readFile(file()), changed);
}

TEST_F(Resume, OtherRulesOptionsOrFilesAreJudgedAgain) {
    const std::string mark = "taken over";
    for (const std::vector<std::string>& more : std::vector<std::vector<std::string>>{
             {"--integrity", "off"}, {"--timeout", "99"}, {"--profile", "all"}}) {
        std::filesystem::remove(file());
        resume();
        std::string changed = readFile(file());
        const std::string from = "\"release\":\"1\"";
        changed.replace(changed.find(from), from.size(), "\"release\":\"" + mark + "\"");
        writeFile(file(), changed);
        resume(more);
        EXPECT_EQ(readFile(file()).find(mark), std::string::npos) << more.front();
    }
}

TEST_F(Resume, PackageThatChangedIsJudgedAgain) {
    const TemporaryDirectory directory;
    const std::string package = directory / "x.rpm";
    std::filesystem::copy_file(corpus().packages() + "/a.rpm", package);
    corpus().check({"-q", "--resume", file(), package});
    std::filesystem::copy_file(corpus().packages() + "/d.rpm", package,
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(corpus().check({"-q", "--resume", file(), package}).status, 1);
    EXPECT_EQ(readFile(file()), corpus().check({"--format", "jsonl", package}).output);
}

TEST_F(Resume, PolicyOfTheNewRunDecides) {
    resume();
    resume({"--fail-on", "warning"});
    EXPECT_EQ(
        readFile(file()),
        corpus().check({"--format", "jsonl", "--fail-on", "warning", corpus().packages()}).output);
}

// What the former run did not measure, nobody knows.
TEST_F(Resume, TimesOfPackagesThatAreTakenOverStayUnknown) {
    const std::string expected = whole();
    const std::size_t second = expected.find('\n', expected.find('\n') + 1) + 1;
    writeFile(file(), expected.substr(0, second));
    resume({"--timings"});
    std::istringstream report(readFile(file()));
    std::vector<bool> isTimed;
    for (std::string line; std::getline(report, line);) {
        const auto json = nlohmann::json::parse(line);
        if (json.contains("package") && !json["package"]["sha256"].is_null()) {
            isTimed.push_back(json["package"].contains("seconds"));
        }
    }
    ASSERT_GT(isTimed.size(), 3U);
    EXPECT_THAT(std::vector(isTimed.begin(), isTimed.begin() + 2), testing::Each(false));
    EXPECT_THAT(std::vector(isTimed.begin() + 2, isTimed.end()), testing::Each(true));
}

TEST_F(Resume, LineThatIsTornIsDropped) {
    const std::string expected = whole();
    const std::size_t second = expected.find('\n', expected.find('\n') + 1) + 1;
    for (const std::string& tail :
         {std::string(), std::string("{"), std::string(5, '\0'), expected.substr(second, 100)}) {
        writeFile(file(), expected.substr(0, second) + tail);
        resume();
        EXPECT_EQ(readFile(file()), expected);
    }
    writeFile(file(), expected.substr(0, second - 1));
    resume();
    EXPECT_EQ(readFile(file()), expected);
}

TEST_F(Resume, ReportsOfStandardOutputCanBeGoneOnWith) {
    const std::string expected = whole();
    writeFile(file(), expected.substr(0, expected.size() / 2));
    const ProgramResult result =
        corpus().check({"--format", "jsonl", "--resume", file(), corpus().packages()});
    EXPECT_EQ(result.output, expected);
}

TEST_F(Resume, ShardsCanBeResumed) {
    const std::vector<std::string> plain = {"--shard", "2/3", "--format", "jsonl",
                                            corpus().packages()};
    const std::string expected = corpus().check(plain).output;
    writeFile(file(), expected.substr(0, expected.find('\n') + 1));
    std::vector<std::string> resumed = plain;
    resumed.insert(resumed.end(), {"--resume", file()});
    EXPECT_EQ(corpus().check(resumed).output, expected);
    EXPECT_EQ(readFile(file()), expected);
}

TEST_F(Resume, WhatIsNotInJsonLinesIsRefusedAndKept) {
    const std::string json = corpus().check({"--format", "json", corpus().packages()}).output;
    for (const std::string& content : {json, std::string("text\n")}) {
        writeFile(file(), content);
        const ProgramResult result = resume();
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors.find("pkgvet: " + file()), 0U) << result.errors;
        EXPECT_EQ(readFile(file()), content);
    }
}

TEST_F(Resume, OutputToTheSameFileIsRefused) {
    resume();
    const ProgramResult result = resume({"-o", "jsonl:" + file()});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("another output goes there as well"));
}

}  // namespace
