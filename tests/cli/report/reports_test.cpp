// The reports of a run, on a stream and in files.
#include "cli/report/reports.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/program/readable_runs.h"
#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

constexpr Format kFormats[] = {Format::Text,     Format::Concise, Format::Json,   Format::Jsonl,
                               Format::Sarif,    Format::Junit,   Format::Github, Format::Gitlab,
                               Format::Markdown, Format::Html};

std::string reported(Reports* reports, const RunReport& run, const std::ostringstream& stream) {
    for (const PackageReport& one : run.packages) {
        reports->add(one);
    }
    reports->finish(run);
    return stream.str();
}

TEST(Reports, StreamReceivesTheWholeReportInEveryFormat) {
    for (const Format format : kFormats) {
        for (const SampleRun& one : sampleRuns()) {
            SCOPED_TRACE(one.name);
            std::ostringstream stream;
            Reports reports(format, {}, stream, {});
            EXPECT_EQ(reported(&reports, one.run, stream), reportOf(format, one.run));
        }
    }
}

TEST(Reports, PackagesAppearAsTheyAreJudged) {
    const PackageReport judged = package({judgement({})});
    for (const Format format : {Format::Text, Format::Jsonl}) {
        std::ostringstream stream;
        Reports reports(format, {}, stream, {});
        reports.add(judged);
        EXPECT_NE(stream.str(), "");
    }
}

// Enough for packages to wait on disk, with bytes that no format can hold.
RunReport bulkyRun() {
    const std::string filling(20'000, 'x');
    std::vector<PackageReport> packages;
    for (int i = 0; i < 300; ++i) {
        const std::string number = std::to_string(i);
        PackageReport one = package({judgement(
            {findingAbout("/usr/" + number, "path-not-allowed", Severity::Error, filling),
             findingAbout(hostileBytes(), "library-not-allowed", Severity::Warning, "Bad"),
             finding("other-remark", Severity::Info, number)})});
        one.path = number + ".rpm";
        one.sha256 = std::string(64 - number.size(), '0') + number;
        packages.push_back(i % 7 == 0 ? unreadable(one.path, filling) : one);
    }
    RunReport run = runOf(packages);
    run.provenance.profiles[0].digest = std::string(64, 'b');
    return run;
}

TEST(Reports, PackagesThatWaitOnDiskAreToldAsThoseInMemory) {
    const RunReport run = bulkyRun();
    std::vector<Format> formats(std::begin(kFormats), std::end(kFormats));
    formats.push_back(Format::InToto);
    for (const Format format : formats) {
        SCOPED_TRACE(static_cast<int>(format));
        std::ostringstream stream;
        Reports reports(format, {}, stream, {});
        EXPECT_TRUE(reported(&reports, run, stream) == reportOf(format, run));
    }
}

TEST(Reports, PackagesThatWereDroppedCount) {
    const RunReport run = sampleRuns()[4].run;
    RunReport dropped = run;
    for (const PackageReport& one : run.packages) {
        dropped.dropped.add(one);
    }
    dropped.packages.clear();
    for (const Format format : kFormats) {
        std::ostringstream stream;
        Reports reports(format, {}, stream, {});
        for (const PackageReport& one : run.packages) {
            reports.add(one);
        }
        reports.finish(dropped);
        EXPECT_EQ(stream.str(), reportOf(format, run));
    }
}

TEST(Reports, FilesReceiveFormatsOfTheirOwn) {
    const TemporaryDirectory directory;
    const RunReport run = sampleRuns()[4].run;
    std::vector<Output> files;
    for (const Format format : kFormats) {
        files.push_back({format, directory / std::to_string(files.size())});
    }
    std::ostringstream stream;
    Reports reports(Format::Text, {}, stream, files);
    reported(&reports, run, stream);
    ReportStyle style;
    style.notices = true;
    for (const Output& file : files) {
        EXPECT_EQ(readFile(file.path), reportOf(file.format, run, style));
    }
}

TEST(Reports, FilesAreNeverColored) {
    const TemporaryDirectory directory;
    ReportStyle style;
    style.color = true;
    std::ostringstream stream;
    Reports reports(Format::Text, style, stream, {{Format::Text, directory / "text"}});
    reported(&reports, sampleRuns()[2].run, stream);
    EXPECT_NE(stream.str().find('\033'), std::string::npos);
    EXPECT_EQ(readFile(directory / "text").find('\033'), std::string::npos);
}

TEST(Reports, GithubAddsASummaryToTheStep) {
    const TemporaryDirectory directory;
    ReportStyle style;
    style.stepSummary = directory.write("summary.md", "Before\n");
    const RunReport run = sampleRuns()[2].run;
    for (const Format format : {Format::Github, Format::Text}) {
        std::ostringstream stream;
        Reports reports(format, style, stream, {});
        reported(&reports, run, stream);
    }
    EXPECT_EQ(readFile(style.stepSummary), "Before\n" + reportOf(Format::Markdown, run));
}

// One finding more than readers of SARIF take.
RunReport largeRun() {
    return runOf(
        {package({judgement(std::vector<Finding>(25'001, finding("a", Severity::Error, "A")))})});
}

TEST(Reports, WhatReadersOfSarifDoNotTakeIsToldOnStandardError) {
    const TemporaryDirectory directory;
    std::ostringstream stream;
    Reports reports(Format::Sarif, {}, stream, {{Format::Sarif, directory / "a.sarif"}});
    testing::internal::CaptureStderr();
    reported(&reports, largeRun(), stream);
    const std::string rest =
        ": holds the worst 25000 of 25001 results, which is what readers of SARIF take; --split "
        "writes further files\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "pkgvet: standard output" + rest + "pkgvet: " + directory / "a.sarif" + rest);
    EXPECT_FALSE(std::filesystem::exists(directory / "a-2.sarif"));
}

TEST(Reports, SplitWritesFurtherFiles) {
    const TemporaryDirectory directory;
    ReportStyle style;
    style.split = true;
    std::ostringstream stream;
    Reports reports(Format::Text, style, stream, {{Format::Sarif, directory / "a.b.sarif"}});
    testing::internal::CaptureStderr();
    reported(&reports, largeRun(), stream);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(std::filesystem::exists(directory / "a.b.sarif"));
    EXPECT_TRUE(std::filesystem::exists(directory / "a.b-2.sarif"));
    EXPECT_FALSE(std::filesystem::exists(directory / "a.b-3.sarif"));
}

TEST(Reports, FileThatCannotBeOpenedIsAnErrorAtOnce) {
    const TemporaryDirectory directory;
    std::ostringstream stream;
    EXPECT_THROW(Reports(Format::Text, {}, stream, {{Format::Json, directory / "no/json"}}),
                 std::runtime_error);
}

TEST(Reports, FileThatIsNotWrittenDoesNotCostTheOthers) {
    const TemporaryDirectory directory;
    std::ostringstream stream;
    Reports reports(Format::Text, {}, stream,
                    {{Format::Json, "/dev/full"}, {Format::Json, directory / "json"}});
    EXPECT_THROW(reports.finish({}), std::runtime_error);
    EXPECT_TRUE(std::filesystem::exists(directory / "json"));
}

// Where no file may grow to the size of what has to wait for the end of the run.
bool failsWithoutRoomToWait(Format format, const std::vector<Output>& outputs) {
    const struct rlimit few { 1U << 20U, RLIM_INFINITY };
    PackageReport package = fullRun().packages.front();
    package.lastErrorLine.assign(std::size_t{8} << 20U, 'x');
    std::ostringstream stream;
    Reports reports(format, {}, stream, outputs);
    signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &few);
    reports.add(package);
    reports.add(package);
    try {
        reports.finish(runOf({package, package}));
    } catch (const std::runtime_error& error) {
        return std::string(error.what()).starts_with("cannot keep a report on disk") &&
               (format == Format::Sarif || stream.str().find("2 packages") != std::string::npos);
    }
    return false;
}

TEST(Reports, OneThatHasNoRoomToWaitDoesNotCostTheOthers) {
    const TemporaryDirectory directory;
    const auto lines = [&directory] {
        const std::string text = readFile(directory / "concise");
        return std::count(text.begin(), text.end(), '\n');
    };
    const std::vector<Output> outputs = {{Format::Sarif, directory / "sarif"},
                                         {Format::Concise, directory / "concise"}};
    EXPECT_TRUE(holdsInChild([&] { return failsWithoutRoomToWait(Format::Text, outputs); }));
    EXPECT_FALSE(std::filesystem::exists(directory / "sarif"));
    const auto whole = lines();
    EXPECT_GT(whole, 2);
    std::filesystem::remove(directory / "concise");
    EXPECT_TRUE(
        holdsInChild([&] { return failsWithoutRoomToWait(Format::Sarif, {outputs.back()}); }));
    EXPECT_EQ(lines(), whole);
}

}  // namespace
