// Writes what all pages share.
#include "cli/page/document.h"

#include <string>

#include "cli/page/html.h"
#include "cli/page/page_files.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kBegin = "{{";
constexpr std::string_view kEnd = "}}";

std::string policyFor(std::string_view script) {
    return "default-src 'none'; style-src " + policySource(kPageStyle) + "; script-src " +
           (script.empty() ? "'none'" : policySource(script)) +
           "; base-uri 'none'; form-action 'none'";
}

}  // namespace

void fillTemplate(std::string_view text,
                  const std::function<void(std::string_view name)>& writePart,
                  std::ostream& stream) {
    for (std::size_t begin = text.find(kBegin); begin != std::string_view::npos;
         begin = text.find(kBegin)) {
        const std::size_t end = text.find(kEnd, begin);
        stream << text.substr(0, begin);
        const std::size_t name = begin + kBegin.size();
        writePart(text.substr(name, end - name));
        text.remove_prefix(end + kEnd.size());
    }
    stream << text;
}

void writePageHead(std::string_view headline, std::string_view script, std::ostream& stream) {
    const auto writePart = [&](std::string_view name) {
        if (name == "policy") {
            stream << policyFor(script);
        } else if (name == "headline") {
            stream << headline;
        } else if (name == "style") {
            stream << kPageStyle;
        }
    };
    fillTemplate(kPageHead, writePart, stream);
}

}  // namespace pkgvet::cli
