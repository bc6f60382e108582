// Writes judgements for a terminal or a log.
#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/catalogue/catalogue.h"
#include "cli/report/formats.h"
#include "cli/report/tally.h"
#include "cli/report/text_parts.h"

namespace pkgvet::cli {

namespace {

// One long name must not push the columns of all other rows out of sight.
constexpr std::size_t kWidestSubject = 40;
constexpr std::size_t kSeverityWidth = 8;  // of "critical"
constexpr std::string_view kNoSubject = "-";

constexpr std::string_view kIndent = "  ";
constexpr std::string_view kFixIndent = "      ";
constexpr std::size_t kFixWidth = 94;  // 100 columns with the indent

struct Row {
    const Finding* finding;
    std::string subject;
    std::string message;
};

// The library puts the subject ahead of most messages; here it has a column of its own.
std::string_view withoutSubject(const Finding& finding) {
    std::string_view message = finding.message;
    if (!finding.subject) {
        return message;
    }
    const std::string prefix = "[" + *finding.subject + "] ";
    if (message.substr(0, prefix.size()) == prefix) {
        message.remove_prefix(prefix.size());
    }
    return message;
}

// A finding that stands under every profile needs no note.
std::string someProfilesNote(const PackageReport& package, const MergedFinding& merged) {
    return merged.profiles.size() < package.judgements.size() ? profilesNote(package, merged)
                                                              : std::string();
}

std::vector<Row> rowsOf(const PackageReport& package, const ReportStyle& style) {
    std::vector<Row> rows;
    for (const MergedFinding& merged : mergedFindings(package)) {
        const Finding& finding = *merged.finding;
        if (finding.standing == Standing::Counts || style.showWaived) {
            rows.push_back({&finding,
                            finding.subject ? printable(*finding.subject) : std::string(kNoSubject),
                            printable(std::string(withoutSubject(finding))
                                          .append(standingNote(finding))
                                          .append(someProfilesNote(package, merged)))});
        }
    }
    return rows;
}

void writeFix(const Finding& finding, std::ostream& stream) {
    const Entry* entry = findEntry(finding.rule);
    if (entry == nullptr) {
        return;
    }
    for (const std::string& line : wrapped(entry->fix, kFixWidth)) {
        stream << kFixIndent << line << '\n';
    }
    std::istringstream example{std::string(entry->example)};
    for (std::string line; std::getline(example, line);) {
        stream << kFixIndent << kIndent << line << '\n';
    }
}

void writeFindings(const PackageReport& package, const ReportStyle& style, std::ostream& stream) {
    const std::vector<Row> rows = rowsOf(package, style);
    std::size_t subjects = 0;
    std::size_t rules = 0;
    for (const Row& row : rows) {
        const std::size_t width = displayWidth(row.subject);
        // A subject that is too long for the column pushes its own row out of line and no other.
        subjects = width > kWidestSubject ? subjects : std::max(subjects, width);
        rules = std::max(rules, row.finding->rule.size());
    }
    stream << (rows.empty() ? std::string() : printable(package.path) + "\n");
    for (const Row& row : rows) {
        const Severity severity = row.finding->severity;
        const std::string name(severityName(severity));
        stream << kIndent << paddedRight(row.subject, subjects) << kIndent
               << painted(paddedRight(name, kSeverityWidth), severityColor(severity), style.color)
               << kIndent << paddedRight(row.finding->rule, rules) << kIndent << row.message
               << '\n';
        if (style.explain) {
            writeFix(*row.finding, stream);
        }
    }
}

}  // namespace

void addText(const PackageReport& package, const ReportStyle& style, std::ostream& stream) {
    if (!package.judged()) {
        stream << printable(package.path) << ": not judged: " << causeWithLastLine(package) << '\n';
        return;
    }
    if (!style.quiet) {
        writeFindings(package, style, stream);
        if (package.judgements.size() > 1) {
            writeProfileMatrix(package, style.color, stream);
        }
    }
    writeTextVerdict(package, style, stream);
}

void finishText(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    if (style.notices) {
        for (const std::string& notice : run.notices) {
            stream << "note: " << printable(notice) << '\n';
        }
    }
    stream << summaryOf(run) << '\n';
}

}  // namespace pkgvet::cli
