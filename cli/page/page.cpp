// Puts the page together.
#include "cli/page/page.h"

#include <string>
#include <string_view>

#include "cli/page/html.h"
#include "cli/page/page_data.h"
#include "cli/page/page_files.h"
#include "cli/page/page_without_scripts.h"
#include "cli/page/static_parts.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kBegin = "{{";
constexpr std::string_view kEnd = "}}";

std::string policy() {
    return "default-src 'none'; style-src " + policySource(kPageStyle) + "; script-src " +
           policySource(kPageScript) + "; base-uri 'none'; form-action 'none'";
}

void writePart(std::string_view name, const RunReport& run, bool showTimings,
               std::ostream& stream) {
    if (name == "policy") {
        stream << policy();
    } else if (name == "headline") {
        stream << headlineOf(run);
    } else if (name == "style") {
        stream << kPageStyle;
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
    std::string_view rest = kPageTemplate;
    for (std::size_t begin = rest.find(kBegin); begin != std::string_view::npos;
         begin = rest.find(kBegin)) {
        const std::size_t end = rest.find(kEnd, begin);
        stream << rest.substr(0, begin);
        const std::size_t name = begin + kBegin.size();
        writePart(rest.substr(name, end - name), run, showTimings, stream);
        rest.remove_prefix(end + kEnd.size());
    }
    stream << rest;
}

}  // namespace pkgvet::cli
