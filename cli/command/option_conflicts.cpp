// Holds options against one another.
#include "cli/command/option_conflicts.h"

#include <algorithm>
#include <initializer_list>

namespace pkgvet::cli {

namespace {

struct Conflict {
    bool exists;
    std::string text;
};

bool hasSarifFile(const ReportOptions& options) {
    const std::vector<Output> files = filesOf(options);
    return std::any_of(files.begin(), files.end(),
                       [](const Output& file) { return file.format == Format::Sarif; });
}

// The first that exists; empty when none does.
std::string firstOf(std::initializer_list<Conflict> conflicts) {
    for (const Conflict& conflict : conflicts) {
        if (conflict.exists) {
            return conflict.text;
        }
    }
    return std::string();
}

}  // namespace

std::string conflictIn(const ReportOptions& report, bool showWaived) {
    const bool hasText = hasReportIn(report, {Format::Text});
    const bool hasFixes = hasReportIn(report, {Format::Text, Format::Github});
    const bool hasList = hasReportIn(report, {Format::Text, Format::Concise});
    const bool hasTimes = hasReportIn(
        report, {Format::Text, Format::Json, Format::Jsonl, Format::Sarif, Format::Junit});
    return firstOf({
        {formatsOfStandardOutput(report).size() > 1, kOneFormatOnStandardOutput},
        {report.quiet && report.explain, "--quiet and --explain contradict each other"},
        {report.explain && !hasFixes, "--explain means nothing without the format text or github"},
        {report.quiet && !hasText, "--quiet means nothing without the format text"},
        {report.color == ColorMode::Always && !hasText,
         "--color always means nothing without the format text"},
        {showWaived && !hasList, "--show-waived means nothing without the format text or concise"},
        {report.timings && !hasTimes,
         "--timings means nothing without the format text, json, jsonl, sarif or junit"},
        {report.split && !hasSarifFile(report),
         "--split means nothing without --output sarif:PATH"},
    });
}

std::string conflictIn(const CheckOptions& options) {
    const std::string inReports = conflictIn(options.report, options.policy.showWaived);
    return firstOf({
        {options.input.nulSeparated && options.input.filesFrom.empty(),
         "--null means nothing without --files-from"},
        {!inReports.empty(), inReports},
        {options.judging.sandbox == SandboxMode::Off && !options.judging.scratch.empty(),
         "--scratch needs a sandbox, and --sandbox off has none"},
        {!options.integrity.enabled && !options.integrity.keyring.empty(),
         "--keyring means nothing with --integrity off, which looks at no signature"},
    });
}

}  // namespace pkgvet::cli
