// Writes a line for each finding.
#include <string_view>

#include "cli/base/escape.h"
#include "cli/report/formats.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

// Lines about no finding bear these in place of a rule's id.
constexpr std::string_view kNotJudged = ": error: not-judged: ";
constexpr std::string_view kNotice = "pkgvet: info: notice: ";
constexpr std::string_view kPartial = "pkgvet: error: partial: the run was interrupted\n";

}  // namespace

void addConcise(const PackageReport& package, const ReportStyle& style, std::ostream& stream) {
    const std::string path = printable(package.path);
    if (!package.judged()) {
        stream << path << kNotJudged << printable(package.cause) << '\n';
    }
    for (const MergedFinding& merged : mergedFindings(package)) {
        const Finding& finding = *merged.finding;
        if (finding.standing != Standing::Counts && !style.showWaived) {
            continue;
        }
        stream << path << ": " << severityName(finding.severity) << ": " << finding.rule << ": "
               << printable(finding.message + standingNote(finding) + profilesNote(package, merged))
               << '\n';
    }
}

void finishConcise(const RunReport& run, const ReportStyle& /*style*/, std::ostream& stream) {
    for (const std::string& notice : run.notices) {
        stream << kNotice << printable(notice) << '\n';
    }
    if (run.partial) {
        stream << kPartial;
    }
}

}  // namespace pkgvet::cli
