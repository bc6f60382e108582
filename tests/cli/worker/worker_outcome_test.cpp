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
        Cut cut;
        std::string cause;
    };
    const std::string report = reportMessage(acceptance());
    const Case cases[] = {
        {"sound", 0, report, Cut::None, ""},
        {"crash", SIGSEGV, "", Cut::None, "the worker was ended by signal 11 (Segmentation fault)"},
        {"crash after the report", SIGABRT, report, Cut::None,
         "the worker was ended by signal 6 (Aborted)"},
        {"status", kExitedWithThree, report, Cut::None, "the worker ended with status 3"},
        {"silence", 0, "", Cut::None, "the worker gave no valid answer"},
        {"nonsense", 0, "nonsense", Cut::None, "the worker gave no valid answer"},
        {"timeout", SIGKILL, report, Cut::Timeout, "it took longer than --timeout allows"},
        {"interruption", SIGKILL, report, Cut::Interruption, "interrupted"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const PackageReport result =
            concludeWorker({test.status, test.answer, "last words"}, test.cut, kProfiles);
        EXPECT_EQ(result.cause, test.cause);
        EXPECT_EQ(result.passes(), test.cause.empty());
        EXPECT_EQ(result.lastWords, test.cause.empty() ? "" : "last words");
    }
}

TEST(WorkerOutcome, RemainsAreRemovedWhateverTheirPermissions) {
    std::string directory = "/tmp/dir.XXXXXX";
    ASSERT_NE(mkdtemp(directory.data()), nullptr);
    std::filesystem::create_directories(directory + "/a/b");
    chmod((directory + "/a").c_str(), 0);
    concludeWorker({SIGKILL, directoryMessage(directory), ""}, Cut::None, kProfiles);
    EXPECT_FALSE(std::filesystem::exists(directory));
}

TEST(WorkerOutcome, LinkInPlaceOfADirectoryStays) {
    std::string directory = "/tmp/dir.XXXXXX";
    ASSERT_NE(mkdtemp(directory.data()), nullptr);
    std::string link = "/tmp/dir.XXXXXX";
    ASSERT_NE(mkdtemp(link.data()), nullptr);
    std::filesystem::remove(link);
    std::filesystem::create_symlink(directory, link);
    concludeWorker({SIGKILL, directoryMessage(link), ""}, Cut::None, kProfiles);
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
        concludeWorker({0, directory + reportMessage(report), ""}, Cut::None, kProfiles);
    ASSERT_EQ(result.judgements.size(), 1U);
    const Finding& heard = result.judgements[0].findings[0];
    EXPECT_EQ(heard.subject, "/tmp/dir.XXXXXX/usr");
    EXPECT_EQ(heard.message, "/tmp/dir.XXXXXX/usr /tmp/dir.XXXXXX /tmp/dir.others");
    EXPECT_EQ(concludeWorker({1, directory, "in /tmp/dir.aB3xyz"}, Cut::None, kProfiles).lastWords,
              "in /tmp/dir.XXXXXX");
}

}  // namespace
