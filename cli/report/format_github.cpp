// Writes workflow commands of GitHub.
#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/base/text_counts.h"
#include "cli/catalogue/catalogue.h"
#include "cli/model/kept_packages.h"
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

// A rule with what an annotation says of its findings in all packages.
struct Annotation {
    RuleTally rule;  // without the findings, of which there may be millions
    std::string path;
    std::string text;                   // of the first of them
    std::vector<std::string> subjects;  // the first of them, fit for a terminal
    TextCounts allSubjects;
};

// "4 findings: A, B and 2 more", in one package or in several.
std::string severalText(const Annotation& annotation) {
    const RuleTally& rule = annotation.rule;
    const std::string count = counted(rule.count, "finding");
    std::vector<std::string> subjects = annotation.subjects;
    const std::size_t more = annotation.allSubjects.size() - subjects.size();
    if (more > 0) {
        subjects.push_back(std::to_string(more) + " more");
    }
    const Entry* entry = findEntry(rule.rule);
    const std::string title = entry == nullptr ? printable(rule.rule) : std::string(entry->title);
    return title + " (" + count + ")" +
           (subjects.empty() ? std::string() : ": " + joined(subjects, ", "));
}

// A step shows ten annotations of a kind, so there is one for each rule.
class Annotations {
public:
    void add(const PackageReport& package);
    void write(const ReportStyle& style, std::ostream& stream) const;

private:
    static void addSubjects(const RuleTally& rule, Annotation* annotation);

    std::map<std::string, Annotation> rules_;
};

void Annotations::add(const PackageReport& package) {
    for (const RuleTally& rule : ruleTallies(package)) {
        const auto [place, isNew] = rules_.try_emplace(rule.rule);
        Annotation& annotation = place->second;
        RuleTally& all = annotation.rule;
        if (isNew) {
            const MergedFinding& first = rule.findings.front();
            all.rule = rule.rule;
            annotation.path = package.path;
            annotation.text = first.finding->message + profilesNote(package, first);
        }
        all.worst = std::max(all.worst, rule.worst);
        all.grave = all.grave || rule.grave;
        all.count += rule.count;
        addSubjects(rule, &annotation);
    }
}

void Annotations::addSubjects(const RuleTally& rule, Annotation* annotation) {
    for (const MergedFinding& merged : rule.findings) {
        const std::optional<std::string>& subject = merged.finding->subject;
        if (subject && annotation->allSubjects.add(*subject) == 1 &&
            annotation->subjects.size() < kMostSubjects) {
            annotation->subjects.push_back(printable(*subject));
        }
    }
}

void Annotations::write(const ReportStyle& style, std::ostream& stream) const {
    std::vector<const Annotation*> ranked;
    for (const auto& rule : rules_) {
        ranked.push_back(&rule.second);
    }
    std::stable_sort(ranked.begin(), ranked.end(), [](const Annotation* a, const Annotation* b) {
        return ranksAhead(a->rule, b->rule);
    });
    for (const Annotation* one : ranked) {
        const RuleTally& rule = one->rule;
        // The library's own words where there is one finding alone.
        writeCommand(commandOf(rule.worst), one->path, rule.rule,
                     (rule.count > 1 ? severalText(*one) : printable(one->text)) +
                         (style.explain ? fixOf(rule.rule) : std::string()),
                     stream);
    }
}

// What could not be judged, or not whole.
void writeFailure(const PackageReport& package, std::ostream& stream) {
    if (!package.judged()) {
        writeCommand("error", package.path, kNotJudgedId, printable(package.cause), stream);
    } else if (!package.complete()) {
        writeCommand("error", package.path, kIncompleteId, printable(package.incomplete), stream);
    }
}

std::size_t excusedIn(const PackageReport& package) {
    const std::vector<MergedFinding> findings = mergedFindings(package);
    return static_cast<std::size_t>(std::count_if(
        findings.begin(), findings.end(),
        [](const MergedFinding& merged) { return merged.finding->standing != Standing::Counts; }));
}

}  // namespace

// Failures come ahead of what was found. What is excused is no error, and of no use one by one.
void finishGithub(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    Annotations annotations;
    std::size_t excused = 0;
    forEachPackage(run, [&](const PackageReport& package) {
        writeFailure(package, stream);
        annotations.add(package);
        excused += excusedIn(package);
    });
    annotations.write(style, stream);
    if (excused > 0) {
        writeCommand("notice", std::string(), kTool,
                     counted(excused, "finding") + " waived or known to the baseline", stream);
    }
    for (const std::string& notice : run.notices) {
        writeCommand("notice", std::string(), kTool, printable(notice), stream);
    }
    writeCommand(run.partial ? "error" : "notice", std::string(), kTool, summaryOf(run), stream);
}

}  // namespace pkgvet::cli
