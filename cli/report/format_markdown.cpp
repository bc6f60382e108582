// Writes a summary in Markdown.
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/text.h"
#include "cli/catalogue/catalogue.h"
#include "cli/model/kept_packages.h"
#include "cli/report/formats.h"
#include "cli/report/markdown.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

// Services refuse a text of more than a mebibyte. The rest is for what follows the packages.
constexpr std::size_t kLargest = (std::size_t{1} << 20U) - 4096;
constexpr std::size_t kMostSubjects = 5;
constexpr std::size_t kLongestNotice = 1024;

constexpr std::string_view kRuleTable =
    "\n| Severity | Rule | Findings | First |\n|---|---|---|---|\n";

std::string verdictOf(const PackageReport& package) {
    if (!package.judged()) {
        return "not judged";
    }
    return package.passes() ? "accepted" : "rejected";
}

// "rejected under regular: 2 errors, 1 warning" for each profile.
void writeVerdicts(const PackageReport& package, std::ostream& stream) {
    for (const Judgement& judgement : package.judgements) {
        const std::string counts = countsOf(tallyOf(judgement));
        stream << "- " << (judgement.passes ? "accepted" : "rejected") << " under "
               << markdownText(judgement.profile) << (counts.empty() ? "" : ": ") << counts << '\n';
    }
    if (!package.judged()) {
        stream << "- " << markdownText(package.cause) << '\n';
    } else if (!package.complete()) {
        stream << "- incomplete: " << markdownText(package.incomplete) << '\n';
    }
}

std::string linkTo(const std::string& rule) {
    const std::string text = markdownText(rule);
    if (findEntry(rule) == nullptr) {
        return text;
    }
    std::string link("[");
    return link.append(text).append("](").append(helpUri(rule)).append(")");
}

void writeRules(const PackageReport& package, std::ostream& stream) {
    const std::vector<RuleTally> rules = ruleTallies(package);
    stream << (rules.empty() ? std::string_view() : kRuleTable);
    for (const RuleTally& rule : rules) {
        std::vector<std::string> subjects;
        for (const std::string& subject : firstSubjects(rule, kMostSubjects)) {
            subjects.push_back(markdownText(subject));
        }
        stream << "| " << severityName(rule.worst) << (rule.grave ? ", never excused" : "") << " | "
               << linkTo(rule.rule) << " | " << rule.count << " | " << joined(subjects, ", ")
               << " |\n";
    }
}

std::string sectionOf(const PackageReport& package) {
    std::ostringstream section;
    section << "\n### " << markdownText(package.path) << ": " << verdictOf(package) << "\n\n";
    writeVerdicts(package, section);
    writeRules(package, section);
    return section.str();
}

}  // namespace

void finishMarkdown(const RunReport& run, const ReportStyle& /*style*/, std::ostream& stream) {
    std::string text = "## pkgvet: " + summaryOf(run) + "\n";
    std::size_t told = 0;
    for (; told < packageCount(run); ++told) {
        const std::string section = sectionOf(packageAt(run, told));
        if (text.size() + section.size() > kLargest) {
            break;
        }
        text += section;
    }
    const std::size_t left = packageCount(run) - told;
    if (left > 0) {
        text += "\nThere is no room here for " + counted(left, "more package") + ".\n";
    }
    for (const std::string& notice : run.notices) {
        text.append("\n> ").append(markdownText(notice).substr(0, kLongestNotice)).append("\n");
    }
    stream << text;
}

}  // namespace pkgvet::cli
