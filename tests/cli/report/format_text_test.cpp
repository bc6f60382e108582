// Text for a person, compared whole.
#include <gtest/gtest.h>

#include <algorithm>

#include "cli/catalogue/catalogue.h"
#include "tests/support/sample_runs.h"

namespace {

using namespace pkgvet::cli;

std::string text(const RunReport& run, const ReportStyle& style = {}) {
    return reportOf(Format::Text, run, style);
}

std::string sample(const std::string& name, const ReportStyle& style = {}) {
    for (const SampleRun& one : sampleRuns()) {
        if (one.name == name) {
            return text(one.run, style);
        }
    }
    return "no such sample";
}

const std::string kAccepted = "1 package: 1 accepted, 0 rejected, 0 not judged\n";
const std::string kRejected = "1 package: 0 accepted, 1 rejected, 0 not judged\n";

TEST(FormatText, FindingsStandInColumns) {
    EXPECT_EQ(sample("rejected"),
              "app.rpm\n"
              "  -             critical  package-scripts      [scripts] Scripts are not allowed\n"
              "  libx.so.1     error     library-not-allowed  Not allowed\n"
              "  /usr/share/a  warning   file-remark          Remarkable\n"
              "  -             info      other-remark         By the way\n"
              "app.rpm: rejected (2 errors, 1 warning)\n" +
                  kRejected);
}

TEST(FormatText, PackageWithoutFindingsIsOneLine) {
    EXPECT_EQ(sample("accepted"), "app.rpm: accepted\n" + kAccepted);
}

TEST(FormatText, NothingToDoIsTheSummaryAlone) {
    EXPECT_EQ(sample("nothing to do"), "0 packages: 0 accepted, 0 rejected, 0 not judged\n");
}

TEST(FormatText, PackageThatIsNotJudgedHasAVerdictLineToo) {
    ReportStyle quiet;
    quiet.quiet = true;
    for (const ReportStyle& style : {ReportStyle(), quiet}) {
        EXPECT_EQ(sample("not judged", style),
                  "/tmp/a b.rpm: not judged: not an RPM package\n"
                  "1 package: 0 accepted, 0 rejected, 1 not judged\n");
    }
}

TEST(FormatText, VerdictSaysWhenThePackageWasNotJudgedWhole) {
    EXPECT_EQ(sample("incomplete"),
              "app.rpm\n  /usr/share/a  critical  header-path-not-normal  Not normal\n"
              "app.rpm: rejected (1 error, 0 warnings, incomplete: the payload is irregular)\n"
              "1 package: 0 accepted, 1 rejected, 0 not judged\n");
}

TEST(FormatText, VerdictTellsOfAPackageThatItsIntegrityAloneRejects) {
    Judgement result = judgement({});
    result.intact = false;
    result.passes = false;
    EXPECT_EQ(reportOf(Format::Text, runOf({package({result})})),
              "app.rpm: rejected (accepted but for its integrity)\n"
              "1 package: 0 accepted, 1 rejected, 0 not judged\n");
}

TEST(FormatText, InterruptedRunSaysSo) {
    EXPECT_EQ(sample("partial"),
              "app.rpm: accepted\n1 package: 1 accepted, 0 rejected, 0 not judged; the run was "
              "interrupted and this report is partial\n");
}

TEST(FormatText, QuietLeavesVerdicts) {
    ReportStyle style;
    style.quiet = true;
    EXPECT_EQ(sample("rejected", style), "app.rpm: rejected (2 errors, 1 warning)\n" + kRejected);
}

TEST(FormatText, WhatDoesNotCountIsCountedAndShownWhenAskedFor) {
    const std::string end =
        "app.rpm: rejected (1 error, 0 warnings, 1 waived, 1 known)\n" + kRejected;
    EXPECT_EQ(sample("waived and known"),
              "app.rpm\n"
              "  -  critical  package-scripts  [scripts] Scripts are not allowed\n"
              "  -  info      other-remark     By the way\n" +
                  end);
    ReportStyle style;
    style.showWaived = true;
    EXPECT_EQ(sample("waived and known", style),
              "app.rpm\n"
              "  -             critical  package-scripts      [scripts] Scripts are not allowed\n"
              "  libx.so.1     error     library-not-allowed  Not allowed (waived: until 2.0 "
              "<\"&'>)\n"
              "  /usr/share/a  warning   file-remark          Remarkable (known)\n"
              "  -             info      other-remark         By the way\n" +
                  end);
}

TEST(FormatText, NoticesComeWhereStandardErrorDoesNotTellThem) {
    ReportStyle style;
    style.notices = true;
    EXPECT_TRUE(sample("waived and known", style)
                    .ends_with("\nnote: a waiver is never used\n" + kRejected));
}

TEST(FormatText, VerdictTellsWhatTurnedIt) {
    Judgement result = judgement({finding("a-rule", Severity::Error, "A")});
    result.findings[0].standing = Standing::Waived;
    result.passes = true;
    EXPECT_EQ(text(runOf({package({result})})),
              "app.rpm: accepted (1 waived, rejected by the rules alone)\n" + kAccepted);
    Judgement strict = judgement({});
    strict.passes = false;
    EXPECT_EQ(text(runOf({package({strict})})),
              "app.rpm: rejected (accepted by the rules alone)\n" + kRejected);
}

TEST(FormatText, VerdictTellsThatValidationIsOff) {
    PackageReport report = package({judgement({})});
    report.validationEnabled = false;
    EXPECT_EQ(text(runOf({report})), "app.rpm: accepted (validation off)\n" + kAccepted);
}

TEST(FormatText, TimingsComeWhenAskedForOnly) {
    ReportStyle style;
    style.timings = true;
    EXPECT_EQ(sample("accepted", style), "app.rpm: accepted (0.25 s)\n" + kAccepted);
}

TEST(FormatText, SeveralProfilesShareFindingsAndShowAMatrix) {
    const Finding library = findingAbout("x", "library-not-allowed", Severity::Error, "A");
    EXPECT_EQ(text(runOf({package({judgement({library}, "regular"), judgement({}, "extended"),
                                   judgement({library}, "mdm")})})),
              "app.rpm\n"
              "  x  error     library-not-allowed  A (regular, mdm)\n"
              "  rule                 regular  extended  mdm\n"
              "  library-not-allowed        1         .    1\n"
              "app.rpm: accepted under extended\n"
              "app.rpm: rejected under regular, mdm\n" +
                  kRejected);
}

TEST(FormatText, WideLettersKeepTheColumns) {
    EXPECT_EQ(
        text(runOf({package({judgement({findingAbout("\u4e2d\u4e2d", "a", Severity::Warning, "A"),
                                        findingAbout("abcd", "a", Severity::Warning, "B")},
                                       "regular")})})),
        "app.rpm\n"
        "  \u4e2d\u4e2d  warning   a  A\n"
        "  abcd  warning   a  B\n"
        "app.rpm: accepted (0 errors, 2 warnings)\n" +
            kAccepted);
}

TEST(FormatText, LongSubjectLeavesTheOthersInPlace) {
    const std::string longName(41, 'x');
    EXPECT_EQ(text(runOf({package({judgement({findingAbout(longName, "a", Severity::Warning, "A"),
                                              findingAbout("y", "a", Severity::Warning, "B")})})})),
              "app.rpm\n  " + longName +
                  "  warning   a  A\n"
                  "  y  warning   a  B\n"
                  "app.rpm: accepted (0 errors, 2 warnings)\n" +
                  kAccepted);
}

TEST(FormatText, ColorMarksSeverityAndVerdict) {
    ReportStyle style;
    style.color = true;
    EXPECT_EQ(text(runOf({package({judgement({finding("a", Severity::Error, "A")})})}), style),
              "app.rpm\n"
              "  -  \033[31merror   \033[m  a  A\n"
              "app.rpm: \033[31mrejected\033[m (1 error, 0 warnings)\n" +
                  kRejected);
}

TEST(FormatText, BytesOfAPackageDoNotReachTheTerminal) {
    ReportStyle style;
    style.notices = true;
    const std::string report = sample("hostile bytes", style);
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 6);
    EXPECT_EQ(report.find_first_of("\033\r\t\b"), std::string::npos);
    EXPECT_EQ(report.find("\u202e"), std::string::npos);
}

}  // namespace
