// Writes JSON, whole or a line at a time.
#include "cli/report/format_json.h"

#include <nlohmann/json.hpp>
#include <string>

#include "cli/base/escape.h"
#include "cli/catalogue/catalogue.h"
#include "cli/report/formats.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;

// Raised when a reader of the former form would go wrong; new keys alone do not raise it.
constexpr int kSchemaVersion = 1;

// In the list of the document.
constexpr std::size_t kPackageMargin = 4;

constexpr const char* kStandings[] = {"counts", "waived", "known"};  // indexed by Standing

// Text that is absent, such as the version of a file that is not a package, is null.
Json orNull(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

// Where text is not UTF-8, which JSON cannot hold, the exact bytes stand beside it: two names that
// differ in these alone would read the same.
void putEscaped(const std::string& key, const std::string& text, Json* json) {
    if (const auto escaped = bytesEscaped(text)) {
        (*json)[key + "_escaped"] = *escaped;
    }
}

Json findingJson(const std::string& package, const Finding& finding) {
    const Entry* entry = findEntry(finding.rule);
    Json json;
    json["rule"] = finding.rule;
    json["severity"] = severityName(finding.severity);
    json["title"] = entry == nullptr ? Json() : Json(entry->title);
    json["help_uri"] = entry == nullptr ? Json() : Json(helpUri(entry->id));
    json["fingerprint"] = fingerprintOf(package, finding);
    putText("subject", finding.subject.value_or(std::string()), &json);
    json["subject"] = finding.subject ? Json(*finding.subject) : Json();
    putText("message", finding.message, &json);
    json["standing"] = standingName(finding.standing);
    putText("reason", finding.reason, &json);
    if (finding.count > 1) {
        json["count"] = finding.count;
    }
    return json;
}

Json judgementJson(const std::string& package, const Judgement& judgement) {
    Json json;
    json["profile"] = judgement.profile;
    putEscaped("profile", judgement.profile, &json);
    json["meta_accepted"] = judgement.metaAccepted;
    json["content_accepted"] = judgement.contentAccepted;
    json["accepted"] = judgement.accepted();
    json["intact"] = judgement.intact;
    json["passes"] = judgement.passes;
    json["findings"] = Json::array();
    for (const Finding& finding : judgement.findings) {
        json["findings"].push_back(findingJson(package, finding));
    }
    return json;
}

// What the package is, and where it comes from.
Json identityJson(const PackageReport& package) {
    Json json;
    putText("path", package.path, &json);
    if (package.position != 0) {
        json["position"] = package.position;
    }
    putText("name", package.name, &json);
    putText("version", package.version, &json);
    putText("release", package.release, &json);
    putText("arch", package.arch, &json);
    json["sha256"] = orNull(package.sha256);
    if (!package.judgedBy.empty()) {
        json["judged_by"] = package.judgedBy;
    }
    return json;
}

Json packageJson(const PackageReport& package, const ReportStyle& style) {
    Json json = identityJson(package);
    json["validation_enabled"] = package.validationEnabled;
    json["complete"] = package.complete();
    putText("cause", package.cause, &json);
    json["cause_code"] = orNull(std::string(causeCodeName(package.causeCode)));
    putText("incomplete", package.incomplete, &json);
    // The key stays as readers of earlier reports know it.
    putText("last_words", package.lastErrorLine, &json);
    json["passes"] = package.passes();
    // Timings differ from run to run; without them reports can be compared.
    if (style.timings && package.seconds) {
        json["seconds"] = *package.seconds;
    }
    json["judgements"] = Json::array();
    for (const Judgement& judgement : package.judgements) {
        json["judgements"].push_back(judgementJson(package.name, judgement));
    }
    return json;
}

Json limitsJson(const AllowedMost& limits) {
    return {{"timeout", limits.seconds},
            {"cpu_time", limits.processorSeconds},
            {"max_unpacked", limits.unpackedBytes},
            {"max_files", limits.files},
            {"memory", limits.memory},
            {"max_report", limits.report}};
}

Json provenanceJson(const Provenance& provenance) {
    Json json;
    json["profiles"] = Json::array();
    for (const ProfileRules& profile : provenance.profiles) {
        json["profiles"].push_back(
            {{"name", profile.name}, {"rules_digest", orNull(profile.digest)}});
    }
    json["validation"] = provenance.validation;
    json["integrity"] = provenance.integrity;
    json["keyring"] = orNull(provenance.keyring);
    json["fail_on"] = orNull(provenance.failOn);
    json["waivers"] = Json::array();
    for (const std::string& digest : provenance.waivers) {
        json["waivers"].push_back(orNull(digest));
    }
    json["baseline"] = orNull(provenance.baseline);
    json["limits"] = limitsJson(provenance.limits);
    return json;
}

Json header() {
    Json json;
    json["schema_version"] = kSchemaVersion;
    return json;
}

Json shardJson(const Shard& shard) {
    return {{"number", shard.number},
            {"of", shard.of},
            {"packages", shard.packages},
            {"input", shard.input}};
}

// Beside the notices, null for each that is UTF-8.
void putEscaped(const std::vector<std::string>& notices, Json* json) {
    Json all = Json::array();
    bool isUtf8 = true;
    for (const std::string& notice : notices) {
        const auto escaped = bytesEscaped(notice);
        isUtf8 = isUtf8 && !escaped;
        all.push_back(escaped ? Json(*escaped) : Json());
    }
    if (!isUtf8) {
        (*json)["notices_escaped"] = std::move(all);
    }
}

void addSummary(const RunReport& run, Json* json) {
    const PackageTally tally = tallyOf(run);
    // "complete" tells of the run here, and of one package in packageJson.
    (*json)["tool"] = {{"name", "pkgvet"}, {"version", run.provenance.version}};
    (*json)["provenance"] = provenanceJson(run.provenance);
    (*json)["sandbox"] = run.sandbox;
    (*json)["complete"] = !run.partial;
    if (run.shard) {
        (*json)["shard"] = shardJson(*run.shard);
    }
    (*json)["summary"] = {{"packages", tally.packages()},
                          {"accepted", tally.accepted},
                          {"rejected", tally.rejected},
                          {"not_judged", tally.notJudged}};
    (*json)["notices"] = run.notices;
    putEscaped(run.notices, json);
}

}  // namespace

std::string_view standingName(Standing standing) {
    return kStandings[static_cast<std::size_t>(standing)];
}

void putText(const std::string& key, const std::string& text, Json* json) {
    (*json)[key] = orNull(text);
    putEscaped(key, text, json);
}

std::string jsonText(const Json& json, int indent) {
    // ASCII, and U+FFFD for each byte that is not UTF-8.
    return json.dump(indent, ' ', true, Json::error_handler_t::replace);
}

// A line feed in a text is escaped, so that each one here ends a line of the document.
std::string jsonTextWithin(const Json& json, std::size_t margin) {
    std::string text;
    for (const char c : jsonText(json, kJsonIndent)) {
        text += c;
        text.append(c == '\n' ? margin : 0, ' ');
    }
    return text;
}

void JsonList::add(const Json& element, std::ostream* stream) {
    const std::size_t margin = margin_ + kJsonIndent;
    *stream << (isEmpty_ ? "[\n" : ",\n") << std::string(margin, ' ')
            << jsonTextWithin(element, margin);
    isEmpty_ = false;
}

void JsonList::finish(std::ostream* stream) const {
    if (isEmpty_) {
        *stream << "[]";
    } else {
        *stream << '\n' << std::string(margin_, ' ') << ']';
    }
}

void headJson(const RunReport& run, const ReportStyle& /*style*/, std::ostream& stream) {
    constexpr std::string_view kEnd = "\n}";
    Json json = header();
    addSummary(run, &json);
    std::string text = jsonText(json, kJsonIndent);
    text.resize(text.size() - kEnd.size());
    stream << text << ",\n  \"packages\": [";
}

void addJson(const PackageReport& package, const ReportStyle& style, std::ostream& stream) {
    stream << "\n    " << jsonTextWithin(packageJson(package, style), kPackageMargin);
}

void finishJson(const RunReport& run, const ReportStyle& /*style*/, std::ostream& stream) {
    stream << (tallyOf(run).packages() == 0 ? "]\n}\n" : "\n  ]\n}\n");
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
