// Writes workflow commands of GitHub.
#include <string>
#include <string_view>

#include "cli/base/escape.h"
#include "cli/catalogue/catalogue.h"
#include "cli/report/formats.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kTool = "pkgvet";

// What a command's text may not hold as such; a property ends at colons and commas as well.
constexpr std::string_view kDataSpecials = "%\r\n";
constexpr std::string_view kPropertySpecials = "%\r\n:,";

bool isPlainInData(char c) {
    return kDataSpecials.find(c) == std::string_view::npos;
}

bool isPlainInProperty(char c) {
    return kPropertySpecials.find(c) == std::string_view::npos;
}

std::string property(std::string_view name, std::string_view value) {
    return std::string(name) + "=" + percentEncoded(printable(value), isPlainInProperty);
}

// A finding that does not count is not an error, whatever it would be otherwise.
std::string_view commandOf(const Finding& finding) {
    if (finding.standing != Standing::Counts || finding.severity == Severity::Info) {
        return "notice";
    }
    return finding.severity == Severity::Warning ? "warning" : "error";
}

void writeCommand(std::string_view command, const std::string& path, std::string_view title,
                  const std::string& text, std::ostream& stream) {
    stream << "::" << command << ' ';
    if (!path.empty()) {
        stream << property("file", path) << ',';
    }
    stream << property("title", title) << "::" << percentEncoded(text, isPlainInData) << '\n';
}

// Empty for a rule that the catalogue does not know, as in a report of a later version.
std::string fixOf(const Finding& finding) {
    std::string fix;
    if (const Entry* entry = findEntry(finding.rule)) {
        fix.append("\n").append(entry->fix);
    }
    return fix;
}

}  // namespace

void addGithub(const PackageReport& package, const ReportStyle& style, std::ostream& stream) {
    if (!package.judged()) {
        writeCommand("error", package.path, kNotJudgedId, printable(package.cause), stream);
    } else if (!package.complete()) {
        writeCommand("error", package.path, kIncompleteId, printable(package.incomplete), stream);
    }
    for (const MergedFinding& merged : mergedFindings(package)) {
        const Finding& finding = *merged.finding;
        const std::string text =
            printable(finding.message + standingNote(finding) + profilesNote(package, merged));
        writeCommand(commandOf(finding), package.path, finding.rule,
                     text + (style.explain ? fixOf(finding) : std::string()), stream);
    }
}

void finishGithub(const RunReport& run, const ReportStyle& /*style*/, std::ostream& stream) {
    for (const std::string& notice : run.notices) {
        writeCommand("notice", std::string(), kTool, printable(notice), stream);
    }
    writeCommand(run.partial ? "error" : "notice", std::string(), kTool, summaryOf(run), stream);
}

}  // namespace pkgvet::cli
