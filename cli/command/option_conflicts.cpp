// Holds options against one another.
#include "cli/command/option_conflicts.h"

#include <algorithm>
#include <array>

namespace pkgvet::cli {

namespace {

struct Conflict {
    bool exists;
    const char* text;
};

bool hasSarifFile(const ReportOptions& options) {
    const std::vector<Output> files = filesOf(options);
    return std::any_of(files.begin(), files.end(),
                       [](const Output& file) { return file.format == Format::Sarif; });
}

}  // namespace

std::string conflictIn(const CheckOptions& options) {
    const ReportOptions& report = options.report;
    const bool hasText = hasReportIn(report, {Format::Text});
    const bool hasFixes = hasReportIn(report, {Format::Text, Format::Github});
    const bool hasList = hasReportIn(report, {Format::Text, Format::Concise});
    const bool hasTimes = hasReportIn(
        report, {Format::Text, Format::Json, Format::Jsonl, Format::Sarif, Format::Junit});
    const std::array conflicts = {
        Conflict{options.input.nulSeparated && options.input.filesFrom.empty(),
                 "--null means nothing without --files-from"},
        Conflict{formatsOfStandardOutput(report).size() > 1,
                 "standard output takes one format: --format or one --output to -"},
        Conflict{report.quiet && report.explain, "--quiet and --explain contradict each other"},
        Conflict{report.explain && !hasFixes,
                 "--explain means nothing without the format text or github"},
        Conflict{report.quiet && !hasText, "--quiet means nothing without the format text"},
        Conflict{report.color == ColorMode::Always && !hasText,
                 "--color always means nothing without the format text"},
        Conflict{options.policy.showWaived && !hasList,
                 "--show-waived means nothing without the format text or concise: the others hold "
                 "excused findings anyway"},
        Conflict{report.timings && !hasTimes,
                 "--timings means nothing with the format concise or github alone"},
        Conflict{report.split && !hasSarifFile(report),
                 "--split means nothing without --output sarif:PATH"},
        Conflict{options.judging.sandbox == SandboxMode::Off && !options.judging.scratch.empty(),
                 "--scratch needs a sandbox, and --sandbox off has none"},
    };
    for (const Conflict& conflict : conflicts) {
        if (conflict.exists) {
            return conflict.text;
        }
    }
    return std::string();
}

}  // namespace pkgvet::cli
