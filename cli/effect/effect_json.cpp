// Writes an effect as JSON.
#include <nlohmann/json.hpp>
#include <string>

#include "cli/base/version.h"
#include "cli/effect/effect_formats.h"
#include "cli/report/format_json.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;

// Raised when a reader of the former form would go wrong; new keys alone do not raise it.
constexpr int kSchemaVersion = 1;

Json turnedJson(const std::vector<TurnedVerdict>& turned) {
    Json all = Json::array();
    for (const TurnedVerdict& one : turned) {
        Json json;
        putText("path", one.path, &json);
        putText("name", one.name, &json);
        putText("profile", one.profile, &json);
        json["before"] = verdictName(one.before);
        json["after"] = verdictName(one.after);
        all.push_back(std::move(json));
    }
    return all;
}

Json placesJson(const RuleChange& rule) {
    Json all = Json::array();
    for (const RuleChange::Place& place : rule.first) {
        Json json;
        putText("path", place.path, &json);
        putText("subject", place.subject.value_or(std::string()), &json);
        all.push_back(std::move(json));
    }
    return all;
}

Json causesJson(const RuleChange& rule) {
    Json all = Json::array();
    for (const auto& [cause, findings] : rule.causes) {
        Json json;
        putText("change", cause, &json);
        json["findings"] = findings;
        all.push_back(std::move(json));
    }
    return all;
}

Json rulesJson(const std::vector<RuleChange>& rules) {
    Json all = Json::array();
    for (const RuleChange& rule : rules) {
        all.push_back({{"rule", rule.rule},
                       {"severity", severityName(rule.worst)},
                       {"findings", rule.findings},
                       {"packages", rule.packages},
                       {"first", placesJson(rule)},
                       {"causes", causesJson(rule)}});
    }
    return all;
}

Json unjudgedJson(const std::vector<UnjudgedPackage>& packages) {
    Json all = Json::array();
    for (const UnjudgedPackage& package : packages) {
        Json json;
        putText("path", package.path, &json);
        putText("before", package.before, &json);
        putText("after", package.after, &json);
        all.push_back(std::move(json));
    }
    return all;
}

Json sideJson(const EffectSide& side) {
    Json json;
    putText("path", side.path, &json);
    putText("version", side.version, &json);
    json["partial"] = side.partial;
    json["profiles"] = Json::array();
    for (const ProfileRules& profile : side.profiles) {
        Json one;
        putText("name", profile.name, &one);
        putText("rules_digest", profile.digest, &one);
        json["profiles"].push_back(std::move(one));
    }
    return json;
}

Json pathsJson(const std::vector<std::string>& paths) {
    Json all = Json::array();
    for (const std::string& path : paths) {
        Json json;
        putText("path", path, &json);
        all.push_back(std::move(json));
    }
    return all;
}

}  // namespace

void writeEffectJson(const Effect& effect, std::ostream& stream) {
    Json json;
    json["schema_version"] = kSchemaVersion;
    json["tool"] = {{"name", "pkgvet"}, {"version", programVersion()}};
    json["before"] = sideJson(effect.before);
    json["after"] = sideJson(effect.after);
    json["partial"] = effect.partial;
    json["compared"] = effect.compared;
    json["not_judged"] = effect.notJudged.size();
    json["unjudged"] = unjudgedJson(effect.notJudged);
    json["turned"] = turnedJson(effect.turned);
    json["appeared"] = rulesJson(effect.appeared);
    json["vanished"] = rulesJson(effect.vanished);
    json["added"] = pathsJson(effect.added);
    json["removed"] = pathsJson(effect.removed);
    stream << jsonText(json, kJsonIndent) << '\n';
}

}  // namespace pkgvet::cli
