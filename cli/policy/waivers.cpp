// Reads waivers and holds findings against them.
#include "cli/policy/waivers.h"

#include <nlohmann/json.hpp>
#include <regex>
#include <utility>

#include "cli/base/json_place.h"
#include "cli/base/strict_json.h"
#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::json;

constexpr const char* kWaivers = "waivers";
constexpr const char* kRule = "rule";
constexpr const char* kSubject = "subject";
constexpr const char* kPackage = "package";
constexpr const char* kReason = "reason";
constexpr const char* kExpires = "expires";

WholePattern readPattern(const JsonReader& reader, const Json& object, const std::string& key,
                         const char* name) {
    const std::string text = reader.text(object, key, name);
    WholePattern pattern(text);
    // The pattern is compiled when it is first used. That is now, so that a bad one is found before
    // the first package.
    if (const auto cause = pattern.fault()) {
        reader.report(member(key, name), kNotARegularExpression + *cause);
    }
    return pattern;
}

std::string readReason(const JsonReader& reader, const Json& object, const std::string& key) {
    std::string reason = reader.text(object, key, kReason);
    // A missing reason has been reported already.
    if (object.contains(kReason) && reason.find_first_not_of(" \t\n") == std::string::npos) {
        reader.report(member(key, kReason), "says nothing");
    }
    return reason;
}

std::string readRule(const JsonReader& reader, const Json& object, const std::string& key) {
    std::string rule = reader.text(object, key, kRule);
    // Such a waiver would have no effect, and whoever wrote it would learn so from a rejection.
    if (isGrave(rule)) {
        reader.report(member(key, kRule), "names " + rule + ", which cannot be waived");
    }
    return rule;
}

std::optional<Date> readLastDay(const JsonReader& reader, const Json& object,
                                const std::string& key) {
    if (!object.contains(kExpires)) {
        return std::nullopt;
    }
    const std::string text = reader.text(object, key, kExpires);
    const std::optional<Date> date = parseDate(text);
    if (!date && object[kExpires].is_string()) {
        reader.report(member(key, kExpires), "is not a day of the form yyyy-mm-dd");
    }
    return date;
}

}  // namespace

std::vector<Waiver> readWaivers(const std::string& path, std::vector<Fault>* faults) {
    const JsonReader reader(path, faults);
    const Json root = reader.load();
    std::vector<Waiver> waivers;
    if (root.is_null()) {
        return waivers;
    }
    reader.refuseUnknown(root, std::string(), {kWaivers});
    for (const auto& [key, object] : reader.objects(root, kWaivers)) {
        reader.refuseUnknown(object, key, {kRule, kSubject, kPackage, kReason, kExpires});
        std::string rule = readRule(reader, object, key);
        WholePattern subject = readPattern(reader, object, key, kSubject);
        WholePattern package = readPattern(reader, object, key, kPackage);
        std::string reason = readReason(reader, object, key);
        waivers.push_back({path, key, std::move(rule), std::move(subject), std::move(package),
                           std::move(reason), readLastDay(reader, object, key)});
    }
    return waivers;
}

bool covers(Waiver* waiver, const Finding& finding, const std::string& package) {
    try {
        return waiver->rule == finding.rule && waiver->package.matches(package) &&
               waiver->subject.matches(finding.subject.value_or(std::string()));
    } catch (const std::regex_error&) {
        // The text needs more steps than the engine permits.
        return false;
    }
}

}  // namespace pkgvet::cli
