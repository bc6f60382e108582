// Adds up packages and findings.
#include "cli/report/tally.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kInterrupted = "; the run was interrupted and this report is partial";

}  // namespace

FindingTally tallyOf(const Judgement& judgement) {
    FindingTally tally;
    for (const Finding& finding : judgement.findings) {
        const std::size_t count = finding.count;
        tally.grave += finding.standing == Standing::Counts && isGrave(finding) ? count : 0;
        if (finding.standing == Standing::Waived) {
            tally.waived += count;
        } else if (finding.standing == Standing::Known) {
            tally.known += count;
        } else if (finding.severity >= Severity::Error) {
            tally.errors += count;
        } else if (finding.severity == Severity::Warning) {
            tally.warnings += count;
        }
    }
    return tally;
}

std::string countsOf(const FindingTally& tally) {
    return tally.errors + tally.warnings == 0
               ? std::string()
               : counted(tally.errors, "error") + ", " + counted(tally.warnings, "warning");
}

std::string summaryOf(const RunReport& run) {
    const PackageTally tally = tallyOf(run);
    std::string summary = counted(tally.packages(), "package") + ": " +
                          std::to_string(tally.accepted) + " accepted, " +
                          std::to_string(tally.rejected) + " rejected, " +
                          std::to_string(tally.notJudged) + " not judged";
    if (run.partial) {
        summary += kInterrupted;
    }
    return summary;
}

std::vector<RuleTally> ruleTallies(const PackageReport& package) {
    std::map<std::string, RuleTally> rules;
    for (MergedFinding& merged : mergedFindings(package)) {
        const Finding& finding = *merged.finding;
        if (finding.standing == Standing::Counts) {
            RuleTally& tally = rules[finding.rule];
            tally.rule = finding.rule;
            tally.worst = std::max(tally.worst, finding.severity);
            tally.grave = tally.grave || isGrave(finding);
            tally.count += finding.count;
            tally.findings.push_back(std::move(merged));
        }
    }
    std::vector<RuleTally> sorted;
    for (auto& rule : rules) {
        sorted.push_back(std::move(rule.second));
    }
    std::stable_sort(sorted.begin(), sorted.end(), ranksAhead);
    return sorted;
}

bool ranksAhead(const RuleTally& a, const RuleTally& b) {
    return std::tie(a.grave, a.worst, a.count) > std::tie(b.grave, b.worst, b.count);
}

std::vector<std::string> firstSubjects(const RuleTally& rule, std::size_t most) {
    std::vector<std::string> subjects;
    std::set<std::string> seen;
    for (const MergedFinding& merged : rule.findings) {
        const std::optional<std::string>& subject = merged.finding->subject;
        if (subject && seen.insert(*subject).second && seen.size() <= most) {
            subjects.push_back(printable(*subject));
        }
    }
    if (seen.size() > most) {
        subjects.push_back(std::to_string(seen.size() - most) + " more");
    }
    return subjects;
}

std::string causeWithLastLine(const PackageReport& package) {
    const std::string end =
        package.lastErrorLine.empty() ? "" : ": " + printable(package.lastErrorLine);
    return printable(package.cause) + end;
}

std::string standingNote(const Finding& finding) {
    switch (finding.standing) {
        case Standing::Waived:
            return " (waived: " + finding.reason + ")";
        case Standing::Known:
            return " (known)";
        case Standing::Counts:
            break;
    }
    return std::string();
}

std::string profilesNote(const PackageReport& package, const MergedFinding& merged) {
    if (package.judgements.size() < 2) {
        return std::string();
    }
    return " (" + joined(merged.profiles, ", ") + ")";
}

}  // namespace pkgvet::cli
