// Writes SARIF 2.1.0.
#include <glib.h>

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "cli/base/escape.h"
#include "cli/base/version.h"
#include "cli/catalogue/catalogue.h"
#include "cli/report/format_json.h"
#include "cli/report/formats.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kSchema =
    "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json";

const std::string kFileScheme = "file://";
// What stands for itself in a URI beside letters and digits.
constexpr std::string_view kUriPlain = "-._~/";

// The keys under which consumers follow a finding from run to run: our own, which depends on the
// finding alone, and the one that code-scanning pages look at, which numbers equals.
constexpr const char* kFingerprint = "pkgvetFinding/v1";
constexpr const char* kNumberedFingerprint = "primaryLocationLineHash";

// The rules that occur, each with its place in the driver's list.
using RuleIndex = std::map<std::string, std::size_t>;

const char* levelOf(Severity severity) {
    switch (severity) {
        case Severity::Info:
            return "note";
        case Severity::Warning:
            return "warning";
        case Severity::Error:
        case Severity::Critical:
            break;
    }
    return "error";
}

Json message(std::string_view text) {
    return {{"text", text}};
}

// Text out of a package, in which "[x](y)" would be taken for a link.
Json foreignMessage(const std::string& text) {
    if (text.find("](") == std::string::npos) {
        return message(text);
    }
    std::string escaped;
    for (const char c : text) {
        escaped.append(c == '[' || c == ']' || c == '\\' ? 1 : 0, '\\').append(1, c);
    }
    return message(escaped);
}

bool isPlainInUri(char c) {
    return g_ascii_isalnum(c) != FALSE || kUriPlain.find(c) != std::string_view::npos;
}

// path as a URI reference, which holds any byte.
std::string uriOf(const std::string& path) {
    const std::string escaped = percentEncoded(path, isPlainInUri);
    return path.substr(0, 1) == "/" ? kFileScheme + escaped : escaped;
}

Json physicalLocation(const PackageReport& package) {
    return {{"artifactLocation", {{"uri", uriOf(package.path)}}}};
}

// The map sorts the rules, so that places do not depend on the order of the packages.
RuleIndex indexOf(const RunReport& run) {
    RuleIndex index;
    for (const PackageReport& package : run.packages) {
        for (const Judgement& judgement : package.judgements) {
            for (const Finding& finding : judgement.findings) {
                index.emplace(finding.rule, 0);
            }
        }
    }
    std::size_t place = 0;
    for (auto& entry : index) {
        entry.second = place++;
    }
    return index;
}

// A rule that the catalogue does not know, as in a report of a later version, has its id alone.
Json ruleJson(const std::string& id) {
    Json rule = {{"id", id}};
    const Entry* entry = findEntry(id);
    if (entry != nullptr) {
        rule["shortDescription"] = message(entry->title);
        rule["fullDescription"] =
            message(std::string(entry->demand) + " " + std::string(entry->why));
        rule["help"] = message(std::string(entry->fix) + "\n\n" + std::string(entry->example));
        rule["defaultConfiguration"] = {{"level", levelOf(entry->severity)}};
    }
    return rule;
}

Json toolJson(const RuleIndex& index) {
    Json rules = Json::array();
    for (const auto& entry : index) {
        rules.push_back(ruleJson(entry.first));
    }
    return {{"driver",
             {{"name", "pkgvet"},
              {"version", programVersion()},
              {"semanticVersion", programVersion()},
              {"rules", std::move(rules)}}}};
}

Json locationJson(const PackageReport& package, const Finding& finding) {
    Json location = {{"physicalLocation", physicalLocation(package)}};
    if (finding.subject) {
        location["logicalLocations"] =
            Json::array({{{"name", *finding.subject},
                          {"fullyQualifiedName", package.name + ": " + *finding.subject}}});
    }
    return location;
}

// Once one result tells whether it is suppressed, all must: an empty list means that it is not.
Json suppressions(const Finding& finding) {
    if (finding.standing == Standing::Counts) {
        return Json::array();
    }
    const bool isWaived = finding.standing == Standing::Waived;
    return Json::array({{{"kind", "external"},
                         {"status", "accepted"},
                         {"justification", isWaived ? finding.reason : "known to the baseline"}}});
}

Json resultJson(const PackageReport& package, const MergedFinding& merged, const RuleIndex& index,
                std::map<std::string, std::size_t>* occurrences) {
    const Finding& finding = *merged.finding;
    const std::string fingerprint = fingerprintOf(package.name, finding);
    const std::size_t occurrence = ++(*occurrences)[fingerprint];
    Json result;
    result["ruleId"] = finding.rule;
    result["ruleIndex"] = index.at(finding.rule);
    result["level"] = levelOf(finding.severity);
    result["message"] = foreignMessage(finding.message);
    result["locations"] = Json::array({locationJson(package, finding)});
    result["partialFingerprints"] = {
        {kFingerprint, fingerprint},
        {kNumberedFingerprint, fingerprint + ":" + std::to_string(occurrence)}};
    result["suppressions"] = suppressions(finding);
    result["properties"] = {{"package", package.name},
                            {"severity", severityName(finding.severity)},
                            {"standing", standingName(finding.standing)},
                            {"profiles", merged.profiles}};
    return result;
}

Json resultsJson(const RunReport& run, const RuleIndex& index) {
    Json results = Json::array();
    std::map<std::string, std::size_t> occurrences;
    for (const PackageReport& package : run.packages) {
        for (const MergedFinding& merged : mergedFindings(package)) {
            results.push_back(resultJson(package, merged, index, &occurrences));
        }
    }
    return results;
}

Json notification(std::string_view id, const char* level, const std::string& text) {
    return {{"descriptor", {{"id", id}}}, {"level", level}, {"message", foreignMessage(text)}};
}

// A notification on one package.
Json notificationOn(const PackageReport& package, std::string_view id, const std::string& text) {
    Json json = notification(id, "error", printable(package.path) + text);
    json["locations"] = Json::array({{{"physicalLocation", physicalLocation(package)}}});
    return json;
}

Json invocationJson(const RunReport& run) {
    Json notifications = Json::array();
    for (const PackageReport& package : run.packages) {
        if (!package.judged()) {
            notifications.push_back(notificationOn(
                package, kNotJudgedId, " could not be judged: " + printable(package.cause)));
        } else if (!package.complete()) {
            notifications.push_back(notificationOn(
                package, kIncompleteId, " was not judged whole: " + printable(package.incomplete)));
        }
    }
    if (run.partial) {
        notifications.push_back(notification(kPartialId, "error", std::string(kInterruptedText)));
    }
    // Notices are remarks: a run with some has succeeded all the same.
    const bool isWhole = notifications.empty();
    for (const std::string& notice : run.notices) {
        notifications.push_back(notification(kNoticeId, "note", notice));
    }
    return {{"executionSuccessful", isWhole},
            {"toolExecutionNotifications", std::move(notifications)}};
}

// SARIF knows results but not verdicts, so these go among the properties of the artifact.
Json verdictsJson(const PackageReport& package) {
    Json verdicts = Json::array();
    for (const Judgement& judgement : package.judgements) {
        verdicts.push_back({{"profile", judgement.profile},
                            {"meta_accepted", judgement.metaAccepted},
                            {"content_accepted", judgement.contentAccepted},
                            {"accepted", judgement.accepted()},
                            {"intact", judgement.intact},
                            {"passes", judgement.passes}});
    }
    return verdicts;
}

Json artifactJson(const PackageReport& package, const ReportStyle& style) {
    Json artifact = {{"location", {{"uri", uriOf(package.path)}}}};
    if (!package.sha256.empty()) {
        artifact["hashes"] = {{"sha-256", package.sha256}};
    }
    artifact["properties"] = {{"name", package.name},
                              {"version", package.version},
                              {"release", package.release},
                              {"arch", package.arch},
                              {"validation_enabled", package.validationEnabled},
                              {"complete", package.complete()},
                              {"passes", package.passes()},
                              {"verdicts", verdictsJson(package)}};
    if (style.timings) {
        artifact["properties"]["seconds"] = package.seconds;
    }
    return artifact;
}

// Each once, even where a package was named twice.
Json artifactsJson(const RunReport& run, const ReportStyle& style) {
    Json artifacts = Json::array();
    std::set<std::string> seen;
    for (const PackageReport& package : run.packages) {
        if (seen.insert(package.path).second) {
            artifacts.push_back(artifactJson(package, style));
        }
    }
    return artifacts;
}

}  // namespace

void finishSarif(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    const RuleIndex index = indexOf(run);
    Json content;
    content["tool"] = toolJson(index);
    content["invocations"] = Json::array({invocationJson(run)});
    content["artifacts"] = artifactsJson(run, style);
    content["results"] = resultsJson(run, index);
    content["properties"] = {{"complete", !run.partial}};
    Json document;
    document["$schema"] = kSchema;
    document["version"] = "2.1.0";
    document["runs"] = Json::array({std::move(content)});
    stream << jsonText(document, kJsonIndent) << '\n';
}

}  // namespace pkgvet::cli
