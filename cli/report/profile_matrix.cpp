// Writes the matrix of rules and profiles.

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/report/folding.h"
#include "cli/report/text_parts.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kIndent = "  ";
constexpr std::string_view kCorner = "rule";
constexpr std::string_view kNone = ".";  // easier to tell from a count than "0"

struct RuleRow {
    std::string rule;
    Severity worst;
    std::vector<std::size_t> counts;  // one for each profile
};

// The row of the finding's rule, which is added when it is the first of that rule.
RuleRow& rowOf(const Finding& finding, std::size_t columns, std::vector<RuleRow>* rows) {
    const auto found = std::find_if(rows->begin(), rows->end(),
                                    [&](const RuleRow& row) { return row.rule == finding.rule; });
    if (found != rows->end()) {
        return *found;
    }
    rows->push_back({finding.rule, finding.severity, std::vector<std::size_t>(columns, 0)});
    return rows->back();
}

// In the order in which the rules are first broken.
std::vector<RuleRow> rowsOf(const PackageReport& package) {
    std::vector<RuleRow> rows;
    const std::size_t columns = package.judgements.size();
    for (std::size_t column = 0; column < columns; ++column) {
        for (const Finding& finding : package.judgements[column].findings) {
            if (finding.standing == Standing::Counts) {
                RuleRow& row = rowOf(finding, columns, &rows);
                row.worst = std::max(row.worst, finding.severity);
                ++row.counts[column];
            }
        }
    }
    return rows;
}

std::string cell(const RuleRow& row, std::size_t column, std::size_t width, bool color) {
    if (row.counts[column] == 0) {
        return paddedLeft(kNone, width);
    }
    return painted(paddedLeft(std::to_string(row.counts[column]), width), severityColor(row.worst),
                   color);
}

bool isAlike(const RuleRow& row) {
    return std::all_of(row.counts.begin(), row.counts.end(),
                       [&row](std::size_t count) { return count == row.counts.front(); });
}

void writeTable(const std::vector<RuleRow>& rows, const PackageReport& package, bool color,
                std::ostream& stream) {
    std::size_t rules = kCorner.size();
    for (const RuleRow& row : rows) {
        rules = std::max(rules, row.rule.size());
    }
    std::vector<std::string> profiles;
    stream << kIndent << paddedRight(kCorner, rules);
    for (const Judgement& judgement : package.judgements) {
        // Each column is as wide as the name at its head.
        profiles.push_back(printable(judgement.profile));
        stream << kIndent << profiles.back();
    }
    stream << '\n';
    for (const RuleRow& row : rows) {
        stream << kIndent << paddedRight(row.rule, rules);
        for (std::size_t column = 0; column < profiles.size(); ++column) {
            stream << kIndent << cell(row, column, displayWidth(profiles[column]), color);
        }
        stream << '\n';
    }
}

}  // namespace

void writeProfileMatrix(const PackageReport& package, const ReportStyle& style,
                        std::ostream& stream) {
    std::vector<RuleRow> rows = rowsOf(package);
    const auto alike = std::stable_partition(rows.begin(), rows.end(),
                                             [](const RuleRow& row) { return !isAlike(row); });
    const auto count = static_cast<std::size_t>(rows.end() - alike);
    rows.erase(alike, rows.end());
    if (!rows.empty()) {
        writeTable(rows, package, style.color, stream);
    }
    if (count > 0) {
        writeFolded(std::string(kIndent) + counted(count, "rule") + (count == 1 ? " is" : " are") +
                        " broken alike under all profiles",
                    style.columns, stream);
    }
}

}  // namespace pkgvet::cli
