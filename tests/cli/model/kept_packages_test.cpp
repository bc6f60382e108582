// Packages that wait on disk.
#include "cli/model/kept_packages.h"

#include <gtest/gtest.h>

#include "tests/support/program/readable_runs.h"
#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

// As a line of JSON, which tells all of a package.
std::string lineOf(const PackageReport& package) {
    ReportStyle style;
    style.timings = true;
    return reportOf(Format::Jsonl, runOf({package}), style);
}

std::vector<std::string> linesOf(const RunReport& run) {
    std::vector<std::string> lines;
    forEachPackage(run,
                   [&lines](const PackageReport& package) { lines.push_back(lineOf(package)); });
    return lines;
}

// The run with its packages kept.
RunReport runWithKept(const RunReport& run, KeptPackages* kept) {
    RunReport result = run;
    for (const PackageReport& package : run.packages) {
        kept->add(package);
    }
    result.packages.clear();
    result.kept = kept;
    return result;
}

TEST(KeptPackages, ComeBackWithAllThatIsKnownOfThem) {
    std::vector<SampleRun> runs = sampleRuns();
    runs.push_back({"full", fullRun()});
    for (const SampleRun& one : runs) {
        SCOPED_TRACE(one.name);
        KeptPackages kept;
        EXPECT_EQ(linesOf(runWithKept(one.run, &kept)), linesOf(one.run));
        EXPECT_EQ(kept.size(), one.run.packages.size());
    }
}

TEST(KeptPackages, WhatNoLineTellsComesBackToo) {
    PackageReport package = unreadable(hostileBytes(), "why");
    package.lastErrorLine = hostileBytes();
    package.causeCode = CauseCode::Crashed;
    package.position = 5'000'000'000U;
    package.judgements = {judgement({finding("a", Severity::Info, hostileBytes())}, "mdm")};
    package.judgements[0].findings[0].count = 5'000'000'000U;
    package.judgements[0].findings[0].subject = std::string();
    KeptPackages kept;
    kept.add(package);
    const PackageReport back = kept.at(0);
    EXPECT_EQ(back.path, package.path);
    EXPECT_EQ(back.lastErrorLine, package.lastErrorLine);
    EXPECT_EQ(back.causeCode, package.causeCode);
    EXPECT_EQ(back.position, package.position);
    EXPECT_FALSE(back.seconds);
    const Finding& found = back.judgements.at(0).findings.at(0);
    EXPECT_EQ(found.message, hostileBytes());
    EXPECT_EQ(found.count, 5'000'000'000U);
    EXPECT_EQ(found.subject, std::string());
}

TEST(KeptPackages, AnyOfThemCanBeFetched) {
    KeptPackages kept;
    for (int i = 0; i < 100; ++i) {
        kept.add(unreadable(std::to_string(i), std::string(100'000, 'a')));
    }
    RunReport run = runOf({unreadable("100", "b")});
    run.kept = &kept;
    EXPECT_EQ(packageCount(run), 101U);
    for (const std::size_t index : {100U, 0U, 99U, 42U}) {
        EXPECT_EQ(packageAt(run, index).path, std::to_string(index));
    }
}

}  // namespace
