// Puts the page together.
#include "cli/page/page.h"

#include <string_view>

#include "cli/page/document.h"
#include "cli/page/page_data.h"
#include "cli/page/page_files.h"
#include "cli/page/page_without_scripts.h"
#include "cli/page/static_parts.h"

namespace pkgvet::cli {

namespace {

void writePart(std::string_view name, const RunReport& run, bool showTimings,
               std::ostream& stream) {
    if (name == "head") {
        writePageHead(headlineOf(run), kPageScript, stream);
    } else if (name == "headline") {
        stream << headlineOf(run);
    } else if (name == "script") {
        stream << kPageScript;
    } else if (name == "notices") {
        writeNotices(run, stream);
    } else if (name == "provenance") {
        writeProvenance(run, stream);
    } else if (name == "static") {
        writeWithoutScripts(run, stream);
    } else if (name == "data") {
        writePageData(run, showTimings, stream);
    }
}

}  // namespace

void writePage(const RunReport& run, bool showTimings, std::ostream& stream) {
    fillTemplate(
        kPageTemplate, [&](std::string_view name) { writePart(name, run, showTimings, stream); },
        stream);
}

}  // namespace pkgvet::cli
