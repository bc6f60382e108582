// Writes the page in HTML.
#include "cli/page/page.h"
#include "cli/report/formats.h"

namespace pkgvet::cli {

void finishHtml(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    writePage(run, style.timings, stream);
}

}  // namespace pkgvet::cli
