// The formats in which a run is reported.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "cli/base/output_option.h"
#include "cli/model/model.h"

namespace pkgvet::cli {

enum class Format {
    Text,
    Concise,
    Json,
    Jsonl,
    Sarif,
    Junit,
    Github,
    Gitlab,
    Markdown,
    Html,
    InToto
};

// A report that goes to a file beside the one on standard output; to a directory in the case of
// records.
using Output = OutputIn<Format>;

// How much a report tells, beyond what every report must.
struct ReportStyle {
    bool color = false;
    std::size_t columns = 0;  // text: of the terminal; 0 where a line may have any length
    bool quiet = false;       // text: verdicts without findings
    bool showWaived = false;  // text and concise: findings that do not count too
    bool explain = false;     // text: how to put each finding right
    bool timings = false;     // what the judging took, which differs from run to run
    bool split = false;       // files: as many as the readers of a format need
    std::string stepSummary;  // github: a file that a summary in Markdown is added to; or empty
    // Text and concise: remarks on the run too. Beside standard output, standard error tells them.
    bool notices = false;
    Severity failOn = Severity::Error;  // the least severity that counts against a package
};

// What stands in place of the id of a rule where a report tells of something other than a finding.
inline constexpr std::string_view kNotJudgedId = "not-judged";
inline constexpr std::string_view kIncompleteId = "incomplete";
inline constexpr std::string_view kPartialId = "partial";
inline constexpr std::string_view kNoticeId = "notice";

inline constexpr std::string_view kInterruptedText = "the run was interrupted";

// A format is a few steps over plain data, which keep nothing in between and go through packages
// one by one, so that a run of many takes little memory. Reports are the same byte for byte for the
// same run, save for timings, and legal in their format whatever bytes a package holds.
struct FormatSteps {
    // What a package adds as soon as it is judged; null where the end writes all.
    void (*add)(const PackageReport& package, const ReportStyle& style, std::ostream& stream);
    // What comes after the last package, or the whole report; null for JUnit, which JunitReport
    // writes.
    void (*finish)(const RunReport& run, const ReportStyle& style, std::ostream& stream);
    // What stands ahead of the packages and depends on all of them; null for nothing.
    void (*head)(const RunReport& run, const ReportStyle& style, std::ostream& stream) = nullptr;
    std::string_view between = {};  // what parts two packages
};

FormatSteps stepsOf(Format format);

// For a person: findings and verdict of each package, and a summary line. With several profiles
// a matrix of rules against profiles comes in between.
void addText(const PackageReport& package, const ReportStyle& style, std::ostream& stream);
void finishText(const RunReport& run, const ReportStyle& style, std::ostream& stream);

// "PATH: severity: rule-id: message", a line for each finding, for editors and grep.
void addConcise(const PackageReport& package, const ReportStyle& style, std::ostream& stream);
void finishConcise(const RunReport& run, const ReportStyle& style, std::ostream& stream);

// One document, described by docs/report.schema.json.
void headJson(const RunReport& run, const ReportStyle& style, std::ostream& stream);
void addJson(const PackageReport& package, const ReportStyle& style, std::ostream& stream);
void finishJson(const RunReport& run, const ReportStyle& style, std::ostream& stream);

// The same objects, one to a line: each package, and the summary last. A report without its last
// line is cut short.
void addJsonLine(const PackageReport& package, const ReportStyle& style, std::ostream& stream);
void finishJsonLines(const RunReport& run, const ReportStyle& style, std::ostream& stream);

// SARIF 2.1.0: one run with a result for each finding, as many as its readers take.
// writeSarifDocuments() has the rest.
void finishSarif(const RunReport& run, const ReportStyle& style, std::ostream& stream);

// Workflow commands of GitHub, which it shows as annotations: one for each rule.
void finishGithub(const RunReport& run, const ReportStyle& style, std::ostream& stream);

// A Code Quality report of GitLab.
void finishGitlab(const RunReport& run, const ReportStyle& style, std::ostream& stream);

// A summary in Markdown: the verdict and the rules of each package, as far as there is room in what
// services take.
void finishMarkdown(const RunReport& run, const ReportStyle& style, std::ostream& stream);

// A page for a browser: one file, as cli/page writes it.
void finishHtml(const RunReport& run, const ReportStyle& style, std::ostream& stream);

// In-toto Statements, a line for each package and profile. What was not judged has none.
void finishInToto(const RunReport& run, const ReportStyle& style, std::ostream& stream);

}  // namespace pkgvet::cli
