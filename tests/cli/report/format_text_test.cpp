// Text for a person, compared whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "cli/base/text.h"
#include "cli/catalogue/catalogue.h"
#include "tests/support/program/sample_runs.h"

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

std::string someFindings(const ReportStyle& style) {
    const std::string helper = "/usr/bin/badpilot-helper";
    const std::string icon = "/usr/share/icons/hicolor/86x86/apps/badpilot.png";
    return text(runOf({package({judgement(
                    {finding("name-not-reverse-domain", Severity::Error,
                             "Package name should follow reverse domain notation (e.g. "
                             "\"org.example.app\")"),
                     finding("scripts-not-allowed", Severity::Critical,
                             "[scripts] Script sections are not allowed in RPM"),
                     findingAbout("a", "provide-not-allowed", Severity::Error, "Not allowed"),
                     findingAbout("b", "provide-not-allowed", Severity::Error, "Not allowed"),
                     findingAbout("c", "dependency-unstable", Severity::Warning, "Unstable"),
                     findingAbout(icon, "icon-missing", Severity::Error, "Icon not found"),
                     findingAbout(helper, "setuid-file", Severity::Error, "Found setuid")})})}),
                style);
}

TEST(FormatText, FindingsStandUnderTheHeadingsOfTheCatalogue) {
    EXPECT_EQ(
        someFindings({}),
        "app.rpm  (regular)\n"
        "  Never excused\n"
        "    critical  scripts-not-allowed  [scripts] Script sections are not allowed in RPM\n"
        "    error     setuid-file          [/usr/bin/badpilot-helper] Found setuid\n"
        "  Package header\n"
        "    error     name-not-reverse-domain  Package name should follow reverse domain "
        "notation (e.g. \"org.example.app\")\n"
        "    error     provide-not-allowed      [a] Not allowed\n"
        "                                       [b] Not allowed\n"
        "    warning   dependency-unstable      [c] Unstable\n"
        "  Files\n"
        "    error     icon-missing  [/usr/share/icons/hicolor/86x86/apps/badpilot.png] Icon "
        "not found\n"
        "app.rpm: rejected: 6 errors, 1 warning; 2 never excused\n"
        "  most: provide-not-allowed 2\n"
        "  next: pkgvet explain scripts-not-allowed\n" +
            kRejected);
}

TEST(FormatText, LinesKeepToTheTerminal) {
    ReportStyle style;
    style.columns = 100;
    const std::string wide = someFindings(style);
    EXPECT_NE(wide.find("\n    error     name-not-reverse-domain  Package name should follow "
                        "reverse domain notation\n"
                        "                                       (e.g. \"org.example.app\")\n"),
              std::string::npos)
        << wide;
    style.columns = 60;
    const std::string narrow = someFindings(style);
    EXPECT_NE(narrow.find("\n    error     name-not-reverse-domain\n"
                          "      Package name should follow reverse domain notation\n"
                          "      (e.g. \"org.example.app\")\n"),
              std::string::npos)
        << narrow;
    EXPECT_NE(narrow.find("    error     provide-not-allowed\n      [a] Not allowed\n      [b] Not "
                          "allowed\n    warning"),
              std::string::npos)
        << narrow;
    EXPECT_NE(narrow.find("[/usr/share/icons/hicolor/86x86/\n"), std::string::npos) << narrow;
    for (const std::size_t columns : {40U, 60U, 80U, 100U}) {
        style.columns = columns;
        style.explain = columns == 100;
        std::istringstream lines(someFindings(style) + sample("hostile bytes", style));
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(displayWidth(line), columns) << line;
        }
    }
}

TEST(FormatText, RuleThatTheCatalogueDoesNotKnowComesLast) {
    EXPECT_EQ(sample("rejected"),
              "app.rpm  (regular)\n"
              "  Never excused\n"
              "    critical  package-scripts  [scripts] Scripts are not allowed\n"
              "  Programs and libraries\n"
              "    error     library-not-allowed  [libx.so.1] Not allowed\n"
              "  Other remarks\n"
              "    info      other-remark  By the way\n"
              "    warning   file-remark   [/usr/share/a] Remarkable\n"
              "app.rpm: rejected: 2 errors, 1 warning; 1 never excused\n"
              "  next: pkgvet explain library-not-allowed\n" +
                  kRejected);
}

TEST(FormatText, PackageWithoutFindingsIsOneLine) {
    EXPECT_EQ(sample("accepted"), "app.rpm: accepted\n" + kAccepted);
}

TEST(FormatText, NothingToDoIsTheSummaryAlone) {
    EXPECT_EQ(sample("nothing to do"), "0 packages: 0 accepted, 0 rejected, 0 not judged\n");
}

TEST(FormatText, PackageThatIsNotJudgedHasAVerdictLineToo) {
    const std::string verdict = "/tmp/a b.rpm: not judged: not an RPM package\n";
    const std::string summary = "1 package: 0 accepted, 0 rejected, 1 not judged\n";
    EXPECT_EQ(sample("not judged"), verdict + "  next: pkgvet explain not-judged\n" + summary);
    ReportStyle style;
    style.quiet = true;
    EXPECT_EQ(sample("not judged", style), verdict + summary);
}

TEST(FormatText, VerdictSaysWhenThePackageWasNotJudgedWhole) {
    EXPECT_EQ(sample("incomplete"),
              "app.rpm  (regular)\n"
              "  Never excused\n"
              "    critical  header-path-not-normal  [/usr/share/a] Not normal\n"
              "app.rpm: rejected: 1 error, 0 warnings; 1 never excused; incomplete: the payload is "
              "irregular\n"
              "  next: pkgvet explain header-path-not-normal\n" +
                  kRejected);
}

TEST(FormatText, VerdictTellsOfAPackageThatItsIntegrityAloneRejects) {
    Judgement result = judgement({});
    result.intact = false;
    result.passes = false;
    EXPECT_EQ(text(runOf({package({result})})),
              "app.rpm: rejected: accepted but for its integrity\n" + kRejected);
}

TEST(FormatText, InterruptedRunSaysSo) {
    EXPECT_EQ(sample("partial"),
              "app.rpm: accepted\n1 package: 1 accepted, 0 rejected, 0 not judged; the run was "
              "interrupted and this report is partial\n");
}

TEST(FormatText, QuietLeavesVerdicts) {
    ReportStyle style;
    style.quiet = true;
    EXPECT_EQ(sample("rejected", style),
              "app.rpm: rejected: 2 errors, 1 warning; 1 never excused\n" + kRejected);
}

TEST(FormatText, WhatDoesNotCountIsCountedAndShownWhenAskedFor) {
    const std::string start =
        "app.rpm  (regular)\n"
        "  Never excused\n"
        "    critical  package-scripts  [scripts] Scripts are not allowed\n";
    const std::string end =
        "app.rpm: rejected: 1 error, 0 warnings; 1 never excused; 1 waived; 1 known\n" + kRejected;
    EXPECT_EQ(sample("waived and known"),
              start + "  Other remarks\n    info      other-remark  By the way\n" + end);
    ReportStyle style;
    style.showWaived = true;
    EXPECT_EQ(sample("waived and known", style),
              start +
                  "  Programs and libraries\n"
                  "    error     library-not-allowed  [libx.so.1] Not allowed (waived: until 2.0 "
                  "<\"&'>)\n"
                  "  Other remarks\n"
                  "    info      other-remark  By the way\n"
                  "    warning   file-remark   [/usr/share/a] Remarkable (known)\n" +
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
              "app.rpm: accepted: 1 waived; rejected by the rules alone\n" + kAccepted);
    Judgement strict = judgement({});
    strict.passes = false;
    EXPECT_EQ(text(runOf({package({strict})})),
              "app.rpm: rejected: accepted by the rules alone\n" + kRejected);
}

TEST(FormatText, VerdictTellsThatValidationIsOff) {
    PackageReport report = package({judgement({})});
    report.validationEnabled = false;
    EXPECT_EQ(text(runOf({report})), "app.rpm: accepted: validation off\n" + kAccepted);
}

TEST(FormatText, TimingsComeWhenAskedForOnly) {
    ReportStyle style;
    style.timings = true;
    EXPECT_EQ(sample("accepted", style), "app.rpm: accepted: 0.25 s\n" + kAccepted);
}

TEST(FormatText, SeveralProfilesShareFindingsAndShowAMatrix) {
    const Finding library = findingAbout("x", "library-not-allowed", Severity::Error, "A");
    EXPECT_EQ(text(runOf({package({judgement({library}, "regular"), judgement({}, "extended"),
                                   judgement({library}, "mdm")})})),
              "app.rpm  (regular, extended, mdm)\n"
              "  Programs and libraries\n"
              "    error     library-not-allowed  [x] A (regular, mdm)\n"
              "  rule                 regular  extended  mdm\n"
              "  library-not-allowed        1         .    1\n"
              "app.rpm: rejected under regular, mdm: 1 error, 0 warnings\n"
              "app.rpm: accepted under extended\n"
              "  next: pkgvet explain library-not-allowed\n" +
                  kRejected);
}

TEST(FormatText, FixStandsOnceBelowARunOfAlikeFindings) {
    ReportStyle style;
    style.explain = true;
    const std::string report = someFindings(style);
    const std::string fix(findEntry("provide-not-allowed")->fix.substr(0, 20));
    EXPECT_NE(
        report.find("[a] Not allowed\n" + std::string(39, ' ') + "[b] Not allowed\n      " + fix),
        std::string::npos)
        << report;
    EXPECT_EQ(report.find("  next: "), std::string::npos);
}

TEST(FormatText, ColorMarksSeverityAndVerdict) {
    ReportStyle style;
    style.color = true;
    EXPECT_EQ(text(runOf({package({judgement({finding("a", Severity::Error, "A")})})}), style),
              "app.rpm  (regular)\n"
              "  \033[1mOther remarks\033[m\n"
              "    \033[31merror   \033[m  a  A\n"
              "app.rpm: \033[31mrejected\033[m: 1 error, 0 warnings\n" +
                  kRejected);
}

TEST(FormatText, BytesOfAPackageDoNotReachTheTerminal) {
    ReportStyle style;
    style.notices = true;
    const std::string report = sample("hostile bytes", style);
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 9);
    EXPECT_EQ(report.find_first_of("\033\r\t\b"), std::string::npos);
    EXPECT_EQ(report.find("\u202e"), std::string::npos);
}

}  // namespace
