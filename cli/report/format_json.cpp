// Writes JSON, whole or a line at a time.
#include "cli/report/format_json.h"

#include <nlohmann/json.hpp>
#include <string>

#include "cli/base/version.h"
#include "cli/report/formats.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;

// Raised when a reader of the former form would go wrong; new keys alone do not raise it.
constexpr int kSchemaVersion = 1;

constexpr const char* kStandings[] = {"counts", "waived", "known"};  // indexed by Standing

// Text that is absent, such as the version of a file that is not a package, is null.
Json orNull(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

Json findingJson(const Finding& finding) {
    Json json;
    json["rule"] = finding.rule;
    json["severity"] = severityName(finding.severity);
    json["subject"] = finding.subject ? Json(*finding.subject) : Json();
    json["message"] = finding.message;
    json["standing"] = standingName(finding.standing);
    json["reason"] = orNull(finding.reason);
    return json;
}

Json judgementJson(const Judgement& judgement) {
    Json json;
    json["profile"] = judgement.profile;
    json["meta_accepted"] = judgement.metaAccepted;
    json["content_accepted"] = judgement.contentAccepted;
    json["accepted"] = judgement.accepted();
    json["intact"] = judgement.intact;
    json["passes"] = judgement.passes;
    json["findings"] = Json::array();
    for (const Finding& finding : judgement.findings) {
        json["findings"].push_back(findingJson(finding));
    }
    return json;
}

Json packageJson(const PackageReport& package, const ReportStyle& style) {
    Json json;
    json["path"] = package.path;
    json["name"] = orNull(package.name);
    json["version"] = orNull(package.version);
    json["release"] = orNull(package.release);
    json["arch"] = orNull(package.arch);
    json["sha256"] = orNull(package.sha256);
    json["validation_enabled"] = package.validationEnabled;
    json["complete"] = package.complete();
    json["cause"] = orNull(package.cause);
    json["cause_code"] = orNull(std::string(causeCodeName(package.causeCode)));
    json["incomplete"] = orNull(package.incomplete);
    // The key stays as readers of earlier reports know it.
    json["last_words"] = orNull(package.lastErrorLine);
    json["passes"] = package.passes();
    // Timings differ from run to run; without them reports can be compared.
    if (style.timings) {
        json["seconds"] = package.seconds;
    }
    json["judgements"] = Json::array();
    for (const Judgement& judgement : package.judgements) {
        json["judgements"].push_back(judgementJson(judgement));
    }
    return json;
}

Json header() {
    Json json;
    json["schema_version"] = kSchemaVersion;
    return json;
}

void addSummary(const RunReport& run, Json* json) {
    const PackageTally tally = tallyOf(run);
    // "complete" tells of the run here, and of one package in packageJson.
    (*json)["tool"] = {{"name", "pkgvet"}, {"version", programVersion()}};
    (*json)["sandbox"] = run.sandbox;
    (*json)["complete"] = !run.partial;
    (*json)["summary"] = {{"packages", tally.packages()},
                          {"accepted", tally.accepted},
                          {"rejected", tally.rejected},
                          {"not_judged", tally.notJudged}};
    (*json)["notices"] = run.notices;
}

}  // namespace

std::string_view standingName(Standing standing) {
    return kStandings[static_cast<std::size_t>(standing)];
}

std::string jsonText(const Json& json, int indent) {
    // ASCII, and U+FFFD for each byte that is not UTF-8.
    return json.dump(indent, ' ', true, Json::error_handler_t::replace);
}

void finishJson(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    Json json = header();
    addSummary(run, &json);
    json["packages"] = Json::array();
    for (const PackageReport& package : run.packages) {
        json["packages"].push_back(packageJson(package, style));
    }
    stream << jsonText(json, kJsonIndent) << '\n';
}

void addJsonLine(const PackageReport& package, const ReportStyle& style, std::ostream& stream) {
    Json json = header();
    json["package"] = packageJson(package, style);
    stream << jsonText(json, kJsonOneLine) << '\n';
}

void finishJsonLines(const RunReport& run, const ReportStyle& /*style*/, std::ostream& stream) {
    Json json = header();
    addSummary(run, &json);
    stream << jsonText(json, kJsonOneLine) << '\n';
}

}  // namespace pkgvet::cli
