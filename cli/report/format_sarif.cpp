// Writes SARIF 2.1.0.
#include "cli/report/format_sarif.h"

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/report/format_json.h"
#include "cli/report/sarif_documents.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kSchema =
    "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json";

// The keys under which consumers follow a finding from run to run: our own, which depends on the
// finding alone, and the one that code-scanning pages look at, which numbers equals.
constexpr const char* kFingerprint = "pkgvetFinding/v1";
constexpr const char* kNumberedFingerprint = "primaryLocationLineHash";

// A package has no lines, and pages show no result without one.
constexpr int kFirstLine = 1;

Json physicalLocation(Json artifactLocation) {
    return {{"artifactLocation", std::move(artifactLocation)},
            {"region", {{"startLine", kFirstLine}}}};
}

Json locationJson(const SarifResult& result, const SarifArtifacts& artifacts) {
    const PackageReport& package = *result.package;
    const Finding& finding = *result.merged.finding;
    Json location = {{"physicalLocation", physicalLocation(artifacts.location(package))}};
    if (finding.subject) {
        location["logicalLocations"] =
            Json::array({{{"name", *finding.subject},
                          {"fullyQualifiedName", package.name + ": " + *finding.subject}}});
    }
    return location;
}

// The file in the package that the finding is about. It is no place of its own for the result:
// pages look for the files of places in a checkout of sources.
Json fileJson(const SarifResult& result, SarifArtifacts* artifacts) {
    return {{"physicalLocation",
             {{"artifactLocation",
               artifacts->location(*result.package, *result.merged.finding->subject)}}}};
}

bool isAboutAFile(const Finding& finding) {
    return finding.subject && finding.subject->starts_with('/');
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

Json resultJson(const SarifResult& result, const SarifRules& rules, SarifArtifacts* artifacts) {
    const Finding& finding = *result.merged.finding;
    Json json;
    json["ruleId"] = finding.rule;
    json["ruleIndex"] = rules.at(finding.rule);
    json["level"] = sarifLevel(finding.severity);
    json["message"] = foreignSarifMessage(finding.message);
    json["locations"] = Json::array({locationJson(result, *artifacts)});
    if (isAboutAFile(finding)) {
        json["relatedLocations"] = Json::array({fileJson(result, artifacts)});
    }
    json["partialFingerprints"] = {
        {kFingerprint, result.fingerprint},
        {kNumberedFingerprint, result.fingerprint + ":" + std::to_string(result.occurrence)}};
    json["suppressions"] = suppressions(finding);
    if (finding.count > 1) {
        json["occurrenceCount"] = finding.count;
    }
    json["properties"] = {{"package", result.package->name},
                          {"severity", severityName(finding.severity)},
                          {"standing", standingName(finding.standing)},
                          {"profiles", result.merged.profiles}};
    return json;
}

Json notification(std::string_view id, const char* level, const std::string& text) {
    return {{"descriptor", {{"id", id}}}, {"level", level}, {"message", foreignSarifMessage(text)}};
}

// A notification on one package.
Json notificationOn(const PackageReport& package, std::string_view id, const std::string& text,
                    const SarifArtifacts& artifacts) {
    Json json = notification(id, "error", printable(package.path) + text);
    json["locations"] =
        Json::array({{{"physicalLocation", physicalLocation(artifacts.location(package))}}});
    return json;
}

Json invocationJson(const RunReport& run, const SarifArtifacts& artifacts) {
    Json notifications = Json::array();
    for (const PackageReport& package : run.packages) {
        if (!package.judged()) {
            notifications.push_back(
                notificationOn(package, kNotJudgedId,
                               " could not be judged: " + printable(package.cause), artifacts));
        } else if (!package.complete()) {
            notifications.push_back(notificationOn(
                package, kIncompleteId, " was not judged whole: " + printable(package.incomplete),
                artifacts));
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

// What pages tell one analysis from another by: all that stands before the last slash. Documents
// that belong together must differ in it, or each would replace the one before.
std::string categoryOf(const RunReport& run, std::size_t number) {
    std::vector<std::string> profiles;
    for (const ProfileRules& profile : run.provenance.profiles) {
        profiles.push_back(profile.name);
    }
    const std::string part = number > 1 ? std::to_string(number) + "/" : std::string();
    return "pkgvet/" + joined(profiles, "+") + "/" + part;
}

std::string escapedForLinks(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        escaped.append(c == '[' || c == ']' || c == '\\' ? 1 : 0, '\\').append(1, c);
    }
    return escaped;
}

}  // namespace

Json sarifMessage(std::string_view text) {
    return {{"text", text}};
}

Json foreignSarifMessage(const std::string& text) {
    return sarifMessage(text.find("](") == std::string::npos ? text : escapedForLinks(text));
}

const char* sarifLevel(Severity severity) {
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

std::vector<SarifResult> sarifResults(const RunReport& run) {
    std::vector<SarifResult> results;
    std::map<std::string, std::size_t> occurrences;
    for (const PackageReport& package : run.packages) {
        for (MergedFinding& merged : mergedFindings(package)) {
            std::string fingerprint = fingerprintOf(package.name, *merged.finding);
            const std::size_t occurrence = ++occurrences[fingerprint];
            results.push_back({&package, std::move(merged), std::move(fingerprint), occurrence});
        }
    }
    return results;
}

Json sarifDocument(const RunReport& run, std::span<const SarifResult> results, std::size_t number,
                   const ReportStyle& style) {
    const SarifRules rules = sarifRules(results);
    SarifArtifacts artifacts(run, style);
    Json content;
    content["tool"] = sarifTool(rules, run.provenance.version);
    content["automationDetails"] = {{"id", categoryOf(run, number)}};
    content["invocations"] = Json::array({invocationJson(run, artifacts)});
    Json all = Json::array();
    for (const SarifResult& result : results) {
        all.push_back(resultJson(result, rules, &artifacts));
    }
    content["artifacts"] = artifacts.json();
    content["results"] = std::move(all);
    content["properties"] = {{"complete", !run.partial}};
    Json document;
    document["$schema"] = kSchema;
    document["version"] = "2.1.0";
    document["runs"] = Json::array({std::move(content)});
    return document;
}

void finishSarif(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    stream << sarifDocuments(run, style, 1).texts.front();
}

}  // namespace pkgvet::cli
