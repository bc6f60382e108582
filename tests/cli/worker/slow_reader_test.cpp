// Whoever takes the reports may be slow, which is not the judges' fault.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "cli/worker/judge_pool.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/judge_run.h"

namespace {

using namespace pkgvet::cli;

namespace fs = std::filesystem;

constexpr double kTimeout = 10;
constexpr std::chrono::seconds kPause{11};

// The judge of the second package is done as soon as the first one's report has been taken.
JudgeFunction judgeThatWaitsFor(const std::string& note) {
    return [note](const Surroundings& surroundings) {
        char first = '\0';
        static_cast<void>(pread(surroundings.package, &first, 1, 0));
        while (first == '2' && !fs::exists(note)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return acceptedReport(std::string(1, first));
    };
}

TEST(SlowReader, CostsNoJudgeItsTime) {
    const TemporaryDirectory directory;
    const std::string note = directory / "note";
    PoolOptions options;
    options.judging.sandbox = SandboxMode::Off;
    options.judging.limits.seconds = kTimeout;
    options.judging.prepare = [&note] { return judgeThatWaitsFor(note); };
    options.profiles = {"regular"};
    options.jobs = 2;
    auto from = std::make_unique<TemplateProcess>(options.judging);
    std::vector<PackageReport> reports;
    const JudgePool::Receiver receiver = [&reports, &note](PackageReport report) {
        if (reports.empty()) {
            std::this_thread::sleep_for(kPause);
            std::ofstream(note) << "x";
        }
        reports.push_back(std::move(report));
        return true;
    };
    Progress progress(2);
    JudgePool pool({{directory.write("1", "1"), ""}, {directory.write("2", "2"), ""}}, options,
                   std::move(from), receiver, &progress);
    EXPECT_TRUE(pool.run());
    ASSERT_EQ(reports.size(), 2U);
    EXPECT_EQ(reports[0].cause, "");
    EXPECT_EQ(reports[1].cause, "");
}

}  // namespace
