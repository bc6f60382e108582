// Writes findings in groups for a terminal or a log.
#include <algorithm>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/catalogue/catalogue.h"
#include "cli/report/folding.h"
#include "cli/report/tally.h"
#include "cli/report/text_parts.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kNeverExcused = "Never excused";

constexpr std::size_t kSeverityWidth = 8;  // of "critical"
constexpr std::string_view kIndent = "  ";
constexpr std::string_view kRowIndent = "    ";
constexpr std::string_view kFixIndent = "      ";
constexpr std::size_t kFixWidth = 94;  // 100 columns with the indent

struct Row {
    const Finding* finding;
    std::string message;
};

struct Group {
    std::string_view title;
    std::vector<Row> rows;
};

// A finding that stands under every profile needs no note.
std::string someProfilesNote(const PackageReport& package, const MergedFinding& merged) {
    return merged.profiles.size() < package.judgements.size() ? profilesNote(package, merged)
                                                              : std::string();
}

// Where a finding stands: the group, by its place among the chapters, and the rule in the group. A
// rule that the catalogue does not know, as in a report of a later version, comes last.
using Place = std::tuple<std::size_t, std::size_t>;

Place placeOf(const Finding& finding) {
    const Entry* entry = findEntry(finding.rule);
    const auto rule = static_cast<std::size_t>(
        std::find(entries().begin(), entries().end(), entry) - entries().begin());
    if (isGrave(finding)) {
        return {0, rule};
    }
    const Chapter* chapter = entry == nullptr ? &chapters().back() : &chapterOf(*entry);
    return {static_cast<std::size_t>(chapter - chapters().data()) + 1, rule};
}

std::string_view titleOf(const Place& place) {
    const std::size_t group = std::get<0>(place);
    return group == 0 ? kNeverExcused : chapters()[group - 1].title;
}

// In the order of the catalogue; what is of one rule stays as it was found.
std::vector<Group> groupsOf(const PackageReport& package, const ReportStyle& style) {
    std::map<Place, std::vector<Row>> rules;
    for (const MergedFinding& merged : mergedFindings(package)) {
        const Finding& finding = *merged.finding;
        if (finding.standing == Standing::Counts || style.showWaived) {
            rules[placeOf(finding)].push_back(
                {&finding, printable(finding.message + standingNote(finding) +
                                     someProfilesNote(package, merged))});
        }
    }
    std::vector<Group> groups;
    for (auto& [place, rows] : rules) {
        if (groups.empty() || groups.back().title != titleOf(place)) {
            groups.push_back({titleOf(place), {}});
        }
        std::move(rows.begin(), rows.end(), std::back_inserter(groups.back().rows));
    }
    return groups;
}

bool isAlike(const Finding& a, const Finding& b) {
    return a.rule == b.rule && a.severity == b.severity;
}

void writeFix(const Finding& finding, const ReportStyle& style, std::ostream& stream) {
    const Entry* entry = findEntry(finding.rule);
    if (entry == nullptr) {
        return;
    }
    const std::size_t width =
        style.columns == 0 ? kFixWidth : std::min(kFixWidth, style.columns - kFixIndent.size());
    for (const std::string& line : wrapped(entry->fix, width)) {
        stream << kFixIndent << line << '\n';
    }
    std::istringstream example{std::string(entry->example)};
    for (std::string line; std::getline(example, line);) {
        stream << kFixIndent << kIndent << line << '\n';
    }
}

// What stands ahead of the message: severity and rule, which a run of alike findings names once.
std::string startOf(const Finding& finding, bool isFirst, std::size_t rules, bool color) {
    const std::string severity(isFirst ? severityName(finding.severity) : std::string_view());
    const std::string rule = isFirst ? printable(finding.rule) : std::string();
    return std::string(kRowIndent) +
           painted(paddedRight(severity, kSeverityWidth), severityColor(finding.severity),
                   color && isFirst) +
           std::string(kIndent) + paddedRight(rule, rules) + std::string(kIndent);
}

void writeGroup(const Group& group, const ReportStyle& style, std::ostream& stream) {
    std::size_t rules = 0;
    for (const Row& row : group.rows) {
        rules = std::max(rules, displayWidth(printable(row.finding->rule)));
    }
    const std::size_t width = kRowIndent.size() + kSeverityWidth + rules + 2 * kIndent.size();
    stream << kIndent << painted(group.title, kBold, style.color) << '\n';
    for (std::size_t i = 0; i < group.rows.size(); ++i) {
        const auto& [finding, message] = group.rows[i];
        const bool isFirst = i == 0 || !isAlike(*finding, *group.rows[i - 1].finding);
        const bool isLast =
            i + 1 == group.rows.size() || !isAlike(*finding, *group.rows[i + 1].finding);
        writeHanging(startOf(*finding, isFirst, rules, style.color), width, message, style.columns,
                     stream);
        if (style.explain && isLast) {
            writeFix(*finding, style, stream);
        }
    }
}

}  // namespace

void writeTextFindings(const PackageReport& package, const ReportStyle& style,
                       std::ostream& stream) {
    const std::vector<Group> groups = groupsOf(package, style);
    if (groups.empty()) {
        return;
    }
    std::vector<std::string> profiles;
    for (const Judgement& judgement : package.judgements) {
        profiles.push_back(printable(judgement.profile));
    }
    writeFolded(printable(package.path) + "  (" + joined(profiles, ", ") + ")", style.columns,
                stream);
    for (const Group& group : groups) {
        writeGroup(group, style, stream);
    }
}

}  // namespace pkgvet::cli
