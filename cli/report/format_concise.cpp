// Writes a line for each finding.
#include <string_view>

#include "cli/base/escape.h"
#include "cli/report/formats.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

// Stands in place of a path where a line is about the run.
constexpr std::string_view kTool = "pkgvet";

// The one form of all lines, which editors and scripts split at the colons.
void writeLine(std::string_view path, std::string_view severity, std::string_view id,
               std::string_view text, std::ostream& stream) {
    stream << path << ": " << severity << ": " << id << ": " << text << '\n';
}

}  // namespace

void addConcise(const PackageReport& package, const ReportStyle& style, std::ostream& stream) {
    const std::string path = printable(package.path);
    if (!package.judged()) {
        writeLine(path, severityName(Severity::Error), kNotJudgedId, printable(package.cause),
                  stream);
    } else if (!package.complete()) {
        writeLine(path, severityName(Severity::Error), kIncompleteId, printable(package.incomplete),
                  stream);
    }
    for (const MergedFinding& merged : mergedFindings(package)) {
        const Finding& finding = *merged.finding;
        if (finding.standing != Standing::Counts && !style.showWaived) {
            continue;
        }
        writeLine(
            path, severityName(finding.severity), finding.rule,
            printable(finding.message + standingNote(finding) + profilesNote(package, merged)),
            stream);
    }
}

void finishConcise(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    if (style.notices) {
        for (const std::string& notice : run.notices) {
            writeLine(kTool, severityName(Severity::Info), kNoticeId, printable(notice), stream);
        }
    }
    if (run.partial) {
        writeLine(kTool, severityName(Severity::Error), kPartialId, kInterruptedText, stream);
    }
}

}  // namespace pkgvet::cli
