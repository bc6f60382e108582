// Writes judgements for a terminal or a log.
#include "cli/base/escape.h"
#include "cli/report/folding.h"
#include "cli/report/formats.h"
#include "cli/report/tally.h"
#include "cli/report/text_parts.h"

namespace pkgvet::cli {

void addText(const PackageReport& package, const ReportStyle& style, std::ostream& stream) {
    if (!style.quiet) {
        writeTextFindings(package, style, stream);
        if (package.judgements.size() > 1) {
            writeProfileMatrix(package, style, stream);
        }
    }
    writeTextVerdict(package, style, stream);
    if (!style.quiet) {
        writeTextAdvice(package, style, stream);
    }
}

void finishText(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    if (style.notices) {
        for (const std::string& notice : run.notices) {
            writeFolded("note: " + printable(notice), style.columns, stream);
        }
    }
    writeFolded(summaryOf(run), style.columns, stream);
}

}  // namespace pkgvet::cli
