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

bool hasText(const Json& object, const char* name) {
    return object.contains(name) && object[name].is_string();
}

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
    // One that is missing or not a text has been reported already.
    if (hasText(object, kReason) && reason.find_first_not_of(" \t\n") == std::string::npos) {
        reader.report(member(key, kReason), "says nothing");
    }
    return reason;
}

std::string readRule(const JsonReader& reader, const Json& object, const std::string& key) {
    std::string rule = reader.text(object, key, kRule);
    if (!hasText(object, kRule)) {
        return rule;
    }
    // Such waivers would have no effect, and whoever wrote them would learn so from a rejection.
    if (findEntry(rule) == nullptr) {
        reader.report(member(key, kRule),
                      "is not the id of a rule; the nearest is " + nearestIds(rule).front());
    } else if (isGrave(rule)) {
        reader.report(member(key, kRule), "cannot be waived");
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
    if (!date && hasText(object, kExpires)) {
        reader.report(member(key, kExpires), "is not a day of the form yyyy-mm-dd");
    }
    return date;
}

}  // namespace

std::vector<Waiver> readWaivers(const std::string& path, std::vector<Fault>* faults,
                                std::string* digest) {
    JsonReader reader(path, faults);
    const Json root = reader.load();
    if (digest != nullptr) {
        *digest = reader.digest();
    }
    std::vector<Waiver> waivers;
    if (root.is_null()) {
        return waivers;
    }
    reader.refuseUnknown(root, std::string(), {kWaivers});
    for (const auto& [key, object] : reader.objects(root, std::string(), kWaivers)) {
        reader.refuseUnknown(object, key, {kRule, kSubject, kPackage, kReason, kExpires});
        std::string rule = readRule(reader, object, key);
        WholePattern subject = readPattern(reader, object, key, kSubject);
        WholePattern package = readPattern(reader, object, key, kPackage);
        std::string reason = readReason(reader, object, key);
        const std::optional<Date> lastDay = readLastDay(reader, object, key);
        waivers.push_back({path, reader.positions().nearest(key), std::move(rule),
                           std::move(subject), std::move(package), std::move(reason), lastDay,
                           reader.positions().nearest(member(key, kExpires))});
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
