// What becomes of a package when its worker has ended.
#include "cli/worker/worker_outcome.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>

#include "cli/worker/wire.h"

namespace {

using namespace pkgvet::cli;

const std::vector<std::string> kProfiles = {"regular"};
constexpr int kExitedWithThree = 3 << 8;

PackageReport acceptance() {
    PackageReport report;
    report.judgements.resize(1);
    report.judgements[0].metaAccepted = true;
    report.judgements[0].contentAccepted = true;
    return report;
}

TEST(WorkerOutcome, OnlyASoundEndWithASoundReportIsAVerdict) {
    struct Case {
        const char* name;
        int status;
        std::string answer;
        StopReason reason;
        std::string cause;
    };
    const std::string report = reportMessage(acceptance());
    const Case cases[] = {
        {"sound", 0, report, StopReason::None, ""},
        {"crash", SIGSEGV, "", StopReason::None,
         "the worker was ended by signal 11 (Segmentation fault)"},
        {"crash after the report", SIGABRT, report, StopReason::None,
         "the worker was ended by signal 6 (Aborted)"},
        {"status", kExitedWithThree, report, StopReason::None, "the worker ended with status 3"},
        {"silence", 0, "", StopReason::None, "the worker gave no valid answer"},
        {"nonsense", 0, "nonsense", StopReason::None, "the worker gave no valid answer"},
        {"timeout", SIGKILL, report, StopReason::Timeout, "it took longer than --timeout allows"},
        {"interruption", SIGKILL, report, StopReason::Interruption, "interrupted"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const PackageReport result =
            concludeWorker({test.status, test.answer, "last words"}, test.reason, kProfiles);
        EXPECT_EQ(result.cause, test.cause);
        EXPECT_EQ(result.passes(), test.cause.empty());
        EXPECT_EQ(result.lastErrorLine, test.cause.empty() ? "" : "last words");
    }
}

TEST(WorkerOutcome, RemainsAreRemovedWhateverTheirPermissions) {
    std::string directory = "/tmp/dir.XXXXXX";
    ASSERT_NE(mkdtemp(directory.data()), nullptr);
    std::filesystem::create_directories(directory + "/a/b");
    chmod((directory + "/a").c_str(), 0);
    concludeWorker({SIGKILL, directoryMessage(directory), ""}, StopReason::None, kProfiles);
    EXPECT_FALSE(std::filesystem::exists(directory));
}

TEST(WorkerOutcome, LinkInPlaceOfADirectoryStays) {
    std::string directory = "/tmp/dir.XXXXXX";
    ASSERT_NE(mkdtemp(directory.data()), nullptr);
    std::string link = "/tmp/dir.XXXXXX";
    ASSERT_NE(mkdtemp(link.data()), nullptr);
    std::filesystem::remove(link);
    std::filesystem::create_symlink(directory, link);
    concludeWorker({SIGKILL, directoryMessage(link), ""}, StopReason::None, kProfiles);
    EXPECT_TRUE(std::filesystem::exists(directory));
    std::filesystem::remove(link);
    std::filesystem::remove(directory);
}

TEST(WorkerOutcome, NamesOfItsDirectoriesAreForgotten) {
    PackageReport report = acceptance();
    Finding finding;
    finding.subject = "/tmp/dir.aB3xyz/usr";
    finding.message = "/tmp/dir.aB3xyz/usr /tmp/dir.aB3xyz /tmp/dir.others";
    report.judgements[0].findings = {finding};
    const std::string directory = directoryMessage("/tmp/dir.aB3xyz");
    const PackageReport result =
        concludeWorker({0, directory + reportMessage(report), ""}, StopReason::None, kProfiles);
    ASSERT_EQ(result.judgements.size(), 1U);
    const Finding& heard = result.judgements[0].findings[0];
    EXPECT_EQ(heard.subject, "/tmp/dir.XXXXXX/usr");
    EXPECT_EQ(heard.message, "/tmp/dir.XXXXXX/usr /tmp/dir.XXXXXX /tmp/dir.others");
    EXPECT_EQ(concludeWorker({1, directory, "in /tmp/dir.aB3xyz"}, StopReason::None, kProfiles)
                  .lastErrorLine,
              "in /tmp/dir.XXXXXX");
}

}  // namespace
