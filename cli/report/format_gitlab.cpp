// Writes a Code Quality report of GitLab.
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "cli/base/escape.h"
#include "cli/catalogue/catalogue.h"
#include "cli/report/format_json.h"
#include "cli/report/formats.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kRunPath = "pkgvet";  // where what is about the run itself stands
constexpr std::string_view kHere = "./";
constexpr int kFirstLine = 1;

const char* severityOf(const Finding& finding) {
    if (isGrave(finding)) {
        return "blocker";
    }
    switch (finding.severity) {
        case Severity::Info:
            return "info";
        case Severity::Warning:
            return "minor";
        case Severity::Error:
            return "major";
        case Severity::Critical:
            break;
    }
    return "critical";
}

// GitLab looks for paths in the repository, and does not know them with "./" in front.
std::string pathOf(const std::string& path) {
    return printable(path.starts_with(kHere) ? path.substr(kHere.size()) : path);
}

Json degradation(const std::string& check, const std::string& description,
                 const std::string& fingerprint, const char* severity, const std::string& path) {
    return {{"description", description},
            {"check_name", check},
            {"fingerprint", fingerprint},
            {"severity", severity},
            {"location", {{"path", pathOf(path)}, {"lines", {{"begin", kFirstLine}}}}}};
}

// GitLab drops what has a fingerprint that came before, so equals are numbered.
class Fingerprints {
public:
    std::string next(const std::string& package, const std::string& rule,
                     const Finding& finding = {}) {
        Finding identity = finding;
        identity.rule = rule;
        const std::string fingerprint = fingerprintOf(package, identity);
        const std::size_t occurrence = ++seen_[fingerprint];
        return occurrence == 1 ? fingerprint : fingerprint + "-" + std::to_string(occurrence);
    }

private:
    std::map<std::string, std::size_t> seen_;
};

// A package that was not judged, or not whole, must not look clean.
void addFailure(const PackageReport& package, Fingerprints* fingerprints, Json* list) {
    if (!package.complete()) {
        const std::string id(package.judged() ? kIncompleteId : kNotJudgedId);
        list->push_back(
            degradation(id, printable(package.judged() ? package.incomplete : package.cause),
                        fingerprints->next(package.path, id), "blocker", package.path));
    }
}

}  // namespace

void finishGitlab(const RunReport& run, const ReportStyle& /*style*/, std::ostream& stream) {
    Json list = Json::array();
    Fingerprints fingerprints;
    for (const PackageReport& package : run.packages) {
        addFailure(package, &fingerprints, &list);
        for (const MergedFinding& merged : mergedFindings(package)) {
            const Finding& finding = *merged.finding;
            // The report has no place for what is excused.
            if (finding.standing == Standing::Counts) {
                list.push_back(degradation(
                    finding.rule, printable(finding.message + profilesNote(package, merged)),
                    fingerprints.next(package.name, finding.rule, finding), severityOf(finding),
                    package.path));
            }
        }
    }
    if (run.partial) {
        const std::string id(kPartialId);
        list.push_back(degradation(id, std::string(kInterruptedText),
                                   fingerprints.next(kRunPath, id), "blocker", kRunPath));
    }
    stream << jsonText(list, kJsonIndent) << '\n';
}

}  // namespace pkgvet::cli
