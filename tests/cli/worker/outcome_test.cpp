// What becomes of a package when its judge has ended.
#include "cli/worker/outcome.h"

#include <gtest/gtest.h>
#include <signal.h>

#include "cli/worker/limits.h"
#include "cli/worker/wire.h"

namespace {

using namespace pkgvet::cli;

const std::vector<std::string> kProfiles = {"regular"};
constexpr std::size_t kMostBytes = 1 << 20;
constexpr int kExitedWithThree = 3 << 8;

PackageReport acceptance() {
    PackageReport report;
    report.judgements.resize(1);
    report.judgements[0].metaAccepted = true;
    report.judgements[0].contentAccepted = true;
    return report;
}

TEST(Outcome, OnlyASoundEndWithASoundReportIsAVerdict) {
    struct Case {
        const char* name;
        int status;
        std::string answer;
        Stop stop;
        std::string cause;
    };
    const std::string report = reportMessage(acceptance(), kMostBytes);
    const Case cases[] = {
        {"sound", 0, report, Stop::None, ""},
        {"crash", SIGSEGV, "", Stop::None, "the judge was ended by signal 11 (Segmentation fault)"},
        {"crash after the report", SIGABRT, report, Stop::None,
         "the judge was ended by signal 6 (Aborted)"},
        {"status", kExitedWithThree, report, Stop::None, "the judge ended with status 3"},
        {"silence", 0, "", Stop::None, "the judge gave no valid answer"},
        {"nonsense", 0, "nonsense", Stop::None, "the judge gave no valid answer"},
        {"timeout", SIGKILL, report, Stop::Timeout, "it took longer than --timeout allows"},
        {"interruption", SIGKILL, report, Stop::Interruption, "interrupted"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const PackageReport result = concludeJudge({test.status, false, test.answer, "last words"},
                                                   test.stop, {}, kProfiles);
        EXPECT_EQ(result.cause, test.cause);
        EXPECT_EQ(result.passes(), test.cause.empty());
        EXPECT_EQ(result.lastErrorLine, test.cause.empty() ? "" : "last words");
    }
}

TEST(Outcome, CausesHaveCodes) {
    struct Case {
        JudgeEnd end;
        Stop stop;
        CauseCode code;
    };
    const Case cases[] = {
        {{SIGSEGV, false, "", ""}, Stop::None, CauseCode::Crashed},
        {{kOutOfTimeStatus << 8, false, "", ""}, Stop::None, CauseCode::OutOfTime},
        {{(kSignalStatus + SIGABRT) << 8, false, "", ""}, Stop::None, CauseCode::Crashed},
        {{kOutOfMemoryStatus << 8, false, "", ""}, Stop::None, CauseCode::OutOfMemory},
        {{SIGTRAP, false, "", "gmem.c:136: failed to allocate 16 bytes"},
         Stop::None,
         CauseCode::OutOfMemory},
        {{0, true, "", ""}, Stop::None, CauseCode::TooLarge},
        {{SIGKILL, false, "", ""}, Stop::Timeout, CauseCode::OutOfTime},
        {{SIGKILL, false, "", ""}, Stop::Interruption, CauseCode::Interrupted},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(concludeJudge(test.end, test.stop, {}, kProfiles).causeCode, test.code);
    }
}

TEST(Outcome, NamesOfDirectoriesAreReplaced) {
    PackageReport report = acceptance();
    Finding finding;
    finding.rule = "path-not-allowed";
    finding.subject = "/tmp/dir.aB3xyz/usr";
    finding.message = "/tmp/dir.aB3xyz/usr /tmp/dir.aB3xyz /tmp/dir.others";
    report.judgements[0].findings = {finding};
    const std::vector<std::string> directories = {"/tmp/dir.aB3xyz", "/tmp/pkgvet.123456"};
    const PackageReport result = concludeJudge({0, false, reportMessage(report, kMostBytes), ""},
                                               Stop::None, directories, kProfiles);
    ASSERT_EQ(result.judgements.size(), 1U);
    const Finding& heard = result.judgements[0].findings[0];
    EXPECT_EQ(heard.subject, "/tmp/dir.XXXXXX/usr");
    EXPECT_EQ(heard.message, "/tmp/dir.XXXXXX/usr /tmp/dir.XXXXXX /tmp/dir.others");
    const JudgeEnd failed = {1 << 8, false, "", "in /tmp/dir.aB3xyz and /tmp/pkgvet.123456"};
    EXPECT_EQ(concludeJudge(failed, Stop::None, directories, kProfiles).lastErrorLine,
              "in /tmp/dir.XXXXXX and /tmp/pkgvet.XXXXXX");
}

}  // namespace
