// Writes workflow commands of GitHub.
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/catalogue/catalogue.h"
#include "cli/report/formats.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kTool = "pkgvet";
constexpr std::size_t kMostSubjects = 5;

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

std::string_view commandOf(Severity severity) {
    if (severity == Severity::Info) {
        return "notice";
    }
    return severity == Severity::Warning ? "warning" : "error";
}

void writeCommand(std::string_view command, const std::string& path, std::string_view title,
                  const std::string& text, std::ostream& stream) {
    stream << "::" << command << ' ';
    if (!path.empty()) {
        stream << property("file", path) << ',';
    }
    stream << property("title", title) << "::" << percentEncoded(text, isPlainInData) << '\n';
}

// Nothing for a rule that the catalogue does not know, as in a report of a later version.
std::string fixOf(const std::string& rule) {
    std::string fix;
    if (const Entry* entry = findEntry(rule)) {
        fix.append("\n").append(entry->fix);
    }
    return fix;
}

// "4 findings: A, B and 2 more", in one package or in several.
std::string severalText(const RuleTally& rule) {
    const std::string count = counted(rule.count, "finding");
    const std::vector<std::string> subjects = firstSubjects(rule, kMostSubjects);
    const Entry* entry = findEntry(rule.rule);
    const std::string title = entry == nullptr ? printable(rule.rule) : std::string(entry->title);
    return title + " (" + count + ")" +
           (subjects.empty() ? std::string() : ": " + joined(subjects, ", "));
}

// The library's own words where there is one finding alone.
std::string textOf(const RuleTally& rule) {
    if (rule.count > 1) {
        return severalText(rule);
    }
    const RuleTally::Place& place = rule.findings.front();
    return printable(place.merged.finding->message + profilesNote(*place.package, place.merged));
}

// A step shows ten annotations of a kind, so there is one for each rule.
void writeRules(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    for (const RuleTally& rule : ruleTallies(run.packages)) {
        writeCommand(commandOf(rule.worst), rule.findings.front().package->path, rule.rule,
                     textOf(rule) + (style.explain ? fixOf(rule.rule) : std::string()), stream);
    }
}

// What could not be judged, or not whole, comes ahead of what was found.
void writeFailures(const RunReport& run, std::ostream& stream) {
    for (const PackageReport& package : run.packages) {
        if (!package.judged()) {
            writeCommand("error", package.path, kNotJudgedId, printable(package.cause), stream);
        } else if (!package.complete()) {
            writeCommand("error", package.path, kIncompleteId, printable(package.incomplete),
                         stream);
        }
    }
}

// What is excused is no error, and of no use one by one.
void writeExcused(const RunReport& run, std::ostream& stream) {
    std::size_t excused = 0;
    for (const PackageReport& package : run.packages) {
        const std::vector<MergedFinding> findings = mergedFindings(package);
        excused += static_cast<std::size_t>(
            std::count_if(findings.begin(), findings.end(), [](const MergedFinding& merged) {
                return merged.finding->standing != Standing::Counts;
            }));
    }
    if (excused > 0) {
        writeCommand("notice", std::string(), kTool,
                     counted(excused, "finding") + " waived or known to the baseline", stream);
    }
}

}  // namespace

void finishGithub(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    writeFailures(run, stream);
    writeRules(run, style, stream);
    writeExcused(run, stream);
    for (const std::string& notice : run.notices) {
        writeCommand("notice", std::string(), kTool, printable(notice), stream);
    }
    writeCommand(run.partial ? "error" : "notice", std::string(), kTool, summaryOf(run), stream);
}

}  // namespace pkgvet::cli
