// Writes the page where no scripts run.
#include "cli/page/page_without_scripts.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/catalogue/catalogue.h"
#include "cli/model/kept_packages.h"
#include "cli/model/summary.h"
#include "cli/page/finding_groups.h"
#include "cli/page/finding_kinds.h"
#include "cli/page/html.h"
#include "cli/page/package_keys.h"
#include "cli/page/static_parts.h"

namespace pkgvet::cli {

namespace {

// In a larger run a message that many findings share stands with its rule alone: the page is to be
// of a size that browsers open at once.
constexpr std::size_t kMostWithMessages = 20000;
constexpr std::string_view kMessagesBelow =
    "<p>The messages of findings that name a file or another subject stand with their rules, below "
    "the packages.\n";

struct RuleCount {
    std::size_t rejected = 0;  // packages
    std::size_t packages = 0;
    std::size_t findings = 0;
};

std::string verdictOf(const PackageReport& package) {
    if (!package.judged()) {
        return "not judged";
    }
    return package.passes() ? "accepted" : "rejected";
}

std::size_t findingsOf(const RunReport& run) {
    std::size_t count = 0;
    forEachPackage(run, [&count](const PackageReport& package) {
        for (const Judgement& judgement : package.judgements) {
            count += judgement.findings.size();
        }
    });
    return count;
}

class Writer {
public:
    Writer(const RunReport& run, std::ostream* stream)
        : run_(run), stream_(*stream), kinds_(run), isLarge_(findingsOf(run) > kMostWithMessages) {}

    void write() {
        writeTotals();
        writeNotJudged();
        stream_ << "<h2>Packages</h2>\n" << (isLarge_ ? kMessagesBelow : std::string_view());
        forEachPackage(run_, [this](const PackageReport& package) { writePackage(package); });
        writeRules();
    }

private:
    void writeTotals();
    void writeNotJudged();
    void writePackage(const PackageReport& package);
    void writeJudgements(const PackageReport& package);
    void writeFindings(const PackageReport& package);
    void writeRules();
    void writeRule(const std::string& rule, const std::set<std::string>& messages);
    std::string kindText(const PackageReport& package, const FindingKind& kind) const;

    const RunReport& run_;
    std::ostream& stream_;
    FindingKinds kinds_;
    PackageKeys keys_;
    bool isLarge_;
    std::map<std::string, std::set<std::string>> messages_;  // of each rule
};

using RuleCounts = std::map<std::string, RuleCount>;

void countRules(const PackageReport& package, RuleCounts* counts) {
    std::set<std::string_view> seen;
    for (const MergedFinding& merged : mergedFindings(package)) {
        const Finding& finding = *merged.finding;
        if (finding.standing != Standing::Counts) {
            continue;
        }
        RuleCount& count = (*counts)[finding.rule];
        count.findings += finding.count;
        if (seen.insert(finding.rule).second) {
            ++count.packages;
            count.rejected += package.passes() ? 0 : 1;
        }
    }
}

std::vector<std::pair<std::string, RuleCount>> rankedRules(const RunReport& run) {
    RuleCounts counts;
    forEachPackage(run, [&counts](const PackageReport& package) { countRules(package, &counts); });
    std::vector<std::pair<std::string, RuleCount>> ranked(counts.begin(), counts.end());
    std::stable_sort(ranked.begin(), ranked.end(), [](const auto& a, const auto& b) {
        return std::tie(a.second.rejected, a.second.findings) >
               std::tie(b.second.rejected, b.second.findings);
    });
    return ranked;
}

void Writer::writeTotals() {
    const PackageTally tally = tallyOf(run_);
    stream_ << "<h2>Totals</h2>\n<table>\n<tr><th scope=row>Accepted<td>" << grouped(tally.accepted)
            << "\n<tr><th scope=row>Rejected<td>" << grouped(tally.rejected)
            << "\n<tr><th scope=row>Not judged<td>" << grouped(tally.notJudged) << "\n</table>\n";
    const auto ranked = rankedRules(run_);
    if (ranked.empty()) {
        return;
    }
    stream_ << "<h2>Rules that packages break</h2>\n<table>\n<tr><th scope=col>Rule<th scope=col>"
               "Rejected packages<th scope=col>Packages<th scope=col>Findings\n";
    for (const auto& [rule, count] : ranked) {
        const std::string id = htmlText(rule);
        stream_ << "<tr><th scope=row><a href=\"#rule=" << id << "\">" << id << "</a><td>"
                << grouped(count.rejected) << "<td>" << grouped(count.packages) << "<td>"
                << grouped(count.findings) << '\n';
    }
    stream_ << "</table>\n";
}

void Writer::writeNotJudged() {
    if (tallyOf(run_).notJudged == 0) {
        return;
    }
    stream_ << "<h2>Not judged</h2>\n<ul>\n";
    forEachPackage(run_, [this](const PackageReport& package) {
        if (!package.judged()) {
            stream_ << "<li><b>" << htmlText(package.path) << "</b>: " << htmlText(package.cause)
                    << '\n';
        }
    });
    stream_ << "</ul>\n";
}

void Writer::writePackage(const PackageReport& package) {
    const std::string verdict = verdictOf(package);
    const std::string name = package.name.empty() ? package.path : package.name;
    stream_ << "<article id=\"package=" << keys_.of(package) << "\"><h3>" << verdict << ": <bdi>"
            << htmlText(name) << "</bdi>";
    if (!package.version.empty()) {
        stream_ << ' ' << htmlText(package.version + "-" + package.release + "." + package.arch);
    }
    stream_ << "</h3><p>" << htmlText(package.path) << '\n';
    if (!package.judged()) {
        stream_ << "<p class=cause>" << htmlText(package.cause) << '\n';
    } else if (!package.complete()) {
        stream_ << "<p class=cause>incomplete: " << htmlText(package.incomplete) << '\n';
    }
    writeJudgements(package);
    writeFindings(package);
    stream_ << "</article>\n";
}

void Writer::writeJudgements(const PackageReport& package) {
    if (package.judgements.size() < 2) {
        return;
    }
    std::vector<std::string> verdicts;
    for (const Judgement& judgement : package.judgements) {
        verdicts.push_back(judgement.profile + (judgement.passes ? " accepted" : " rejected"));
    }
    stream_ << "<p>" << htmlText(joined(verdicts, ", ")) << '\n';
}

std::string Writer::kindText(const PackageReport& package, const FindingKind& kind) const {
    // Each rule at the end has its messages.
    std::string text = kind.hasSubject && isLarge_ ? "" : ": " + textWithoutSubject(kind);
    if (kind.standing != Standing::Counts) {
        text += kind.standing == Standing::Waived ? " (waived: " + printable(kind.reason) + ")"
                                                  : " (known)";
    }
    if (kind.profiles.size() < package.judgements.size()) {
        std::vector<std::string> names;
        for (const std::size_t profile : kind.profiles) {
            names.push_back(kinds_.profiles()[profile]);
        }
        text += " (" + joined(names, ", ") + ")";
    }
    return text;
}

// The scripts read the subjects here: each stands in a line of its own behind "<dd>".
void Writer::writeFindings(const PackageReport& package) {
    const std::vector<FindingGroup> groups = groupsOf(package, &kinds_);
    stream_ << (groups.empty() ? "" : "<dl>\n");
    for (const FindingGroup& group : groups) {
        const FindingKind& kind = *kinds_.all()[group.kind];
        messages_[kind.rule].insert(textWithoutSubject(kind));
        stream_ << "<dt>" << severityName(kind.severity) << ' ' << htmlText(kind.rule)
                << htmlText(kindText(package, kind)) << '\n';
        for (const Finding* finding : group.findings) {
            if (kind.hasSubject) {
                stream_ << "<dd>" << htmlText(*finding->subject) << '\n';
            }
        }
    }
    stream_ << (groups.empty() ? "" : "</dl>");
}

void Writer::writeRule(const std::string& rule, const std::set<std::string>& messages) {
    const Entry* entry = findEntry(rule);
    stream_ << "<article id=\"rule=" << htmlText(rule) << "\"><h3>" << htmlText(rule) << "</h3>\n";
    if (entry != nullptr) {
        stream_ << "<p><b>" << htmlProse(entry->title) << "</b>\n<p>" << htmlProse(entry->demand)
                << "\n<p>" << htmlProse(entry->why) << "\n<p>" << htmlProse(entry->fix) << '\n';
        if (!entry->example.empty()) {
            stream_ << "<pre>" << htmlText(entry->example) << "</pre>\n";
        }
    }
    stream_ << "<ul>\n";
    for (const std::string& message : messages) {
        stream_ << "<li>" << htmlText(message) << '\n';
    }
    stream_ << "</ul></article>\n";
}

void Writer::writeRules() {
    stream_ << (messages_.empty() ? ""
                                  : "<h2>What the rules ask for, and how to put it right</h2>\n");
    for (const auto& [rule, messages] : messages_) {
        writeRule(rule, messages);
    }
}

}  // namespace

void writeWithoutScripts(const RunReport& run, std::ostream& stream) {
    Writer(run, &stream).write();
}

}  // namespace pkgvet::cli
