// Writes SARIF 2.1.0.
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/base/piece_stream.h"
#include "cli/base/text.h"
#include "cli/model/kept_packages.h"
#include "cli/report/format_json.h"
#include "cli/report/sarif_documents.h"
#include "cli/report/sarif_parts.h"

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

// A finding with its package.
struct Told {
    const PackageReport& package;
    const MergedFinding& merged;
    const SarifResult& result;

    const Finding& finding() const { return *merged.finding; }
};

Json locationJson(const Told& told, const SarifPackages& packages) {
    const std::optional<std::string>& subject = told.finding().subject;
    Json location = {{"physicalLocation", sarifPhysicalLocation(packages.location(told.package))}};
    if (subject) {
        location["logicalLocations"] = Json::array(
            {{{"name", *subject}, {"fullyQualifiedName", told.package.name + ": " + *subject}}});
    }
    return location;
}

// The file in the package that the finding is about. It is no place of its own for the result:
// pages look for the files of places in a checkout of sources.
Json fileJson(const Told& told, SarifFiles* files) {
    return {{"physicalLocation",
             {{"artifactLocation", files->location(told.package, *told.finding().subject)}}}};
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

Json resultJson(const Told& told, const SarifRules& rules, const SarifPackages& packages,
                SarifFiles* files) {
    const Finding& finding = told.finding();
    const std::string fingerprint = fingerprintOf(told.package.name, finding);
    Json json;
    json["ruleId"] = finding.rule;
    json["ruleIndex"] = rules.at(finding.rule);
    json["level"] = sarifLevel(finding.severity);
    json["message"] = foreignSarifMessage(finding.message);
    json["locations"] = Json::array({locationJson(told, packages)});
    if (isAboutAFile(finding)) {
        json["relatedLocations"] = Json::array({fileJson(told, files)});
    }
    json["partialFingerprints"] = {
        {kFingerprint, fingerprint},
        {kNumberedFingerprint, fingerprint + ":" + std::to_string(told.result.occurrence)}};
    json["suppressions"] = suppressions(finding);
    if (finding.count > 1) {
        json["occurrenceCount"] = finding.count;
    }
    json["properties"] = {{"package", told.package.name},
                          {"severity", severityName(finding.severity)},
                          {"standing", standingName(finding.standing)},
                          {"profiles", told.merged.profiles}};
    return json;
}

// The results as a list. Files that they are about become artifacts. Results of one package mostly
// stand together, so that each package is fetched once or a few times.
SpooledList resultList(const RunReport& run, const SarifParts& parts,
                       std::span<const SarifResult> results, const SarifRules& rules,
                       SarifFiles* files) {
    SpooledList list{JsonList(kSarifRunMargin)};
    std::optional<std::size_t> place;
    PackageReport package;
    std::vector<MergedFinding> findings;
    for (const SarifResult& result : results) {
        if (place != result.package) {
            place = result.package;
            package = packageAt(run, *place);
            findings = mergedFindings(package);
        }
        list.add(
            resultJson({package, findings[result.finding], result}, rules, parts.packages, files));
    }
    return list;
}

void writeNotifications(const RunReport& run, const SarifParts& parts, std::ostream* stream) {
    parts.failures.write(stream);
    JsonList list = parts.failures.list();
    if (run.partial) {
        list.add(sarifNotification(kPartialId, "error", std::string(kInterruptedText)), stream);
    }
    for (const std::string& notice : run.notices) {
        list.add(sarifNotification(kNoticeId, "note", notice), stream);
    }
    list.finish(stream);
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

std::string within(const Json& json) {
    return jsonTextWithin(json, kSarifRunMargin);
}

// Notices are remarks: a run with some has succeeded all the same.
void writeInvocation(const RunReport& run, const SarifParts& parts, std::ostream* stream) {
    const bool isWhole = parts.isWhole && !run.partial;
    *stream << "[\n        {\n          \"executionSuccessful\": " << (isWhole ? "true" : "false")
            << ",\n          \"toolExecutionNotifications\": ";
    writeNotifications(run, parts, stream);
    *stream << "\n        }\n      ]";
}

}  // namespace

Json sarifPhysicalLocation(Json artifactLocation) {
    return {{"artifactLocation", std::move(artifactLocation)},
            {"region", {{"startLine", kFirstLine}}}};
}

Json sarifNotification(std::string_view id, const char* level, const std::string& text) {
    return {{"descriptor", {{"id", id}}}, {"level", level}, {"message", foreignSarifMessage(text)}};
}

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

// The lists may be of any length, so that the document is put together piece by piece.
Spool sarifDocument(const RunReport& run, const SarifParts& parts,
                    std::span<const SarifResult> results, std::size_t number) {
    const SarifRules rules = sarifRules(results, parts.rules);
    SarifFiles files(parts.packages);
    const SpooledList list = resultList(run, parts, results, rules, &files);
    Spool document;
    PieceStream pieces([&document](std::string_view piece) { document.write(piece); });
    std::ostream& stream = pieces.stream();
    stream << "{\n  \"$schema\": \"" << kSchema
           << "\",\n  \"version\": \"2.1.0\",\n  \"runs\": [\n    {\n      \"tool\": "
           << within(sarifTool(rules, run.provenance.version))
           << ",\n      \"automationDetails\": " << within({{"id", categoryOf(run, number)}})
           << ",\n      \"invocations\": ";
    writeInvocation(run, parts, &stream);
    stream << ",\n      \"artifacts\": ";
    files.write(&stream);
    stream << ",\n      \"results\": ";
    list.write(&stream);
    list.list().finish(&stream);
    stream << ",\n      \"properties\": " << within({{"complete", !run.partial}})
           << "\n    }\n  ]\n}\n";
    pieces.finish();
    return document;
}

void finishSarif(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    writeSarifDocuments(run, style, 1, [&stream](const Spool& document) {
        document.read([&stream](std::string_view piece) { stream << piece; });
    });
}

}  // namespace pkgvet::cli
