// Writes files of waivers.
#include "cli/policy/waiver_file.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

namespace pkgvet::cli {

namespace {

using OrderedJson = nlohmann::ordered_json;

constexpr std::string_view kSyntax = "^$\\.*+?()[]{}|";

OrderedJson toJson(const NewWaiver& waiver) {
    OrderedJson object;
    object["rule"] = waiver.rule;
    object["subject"] = patternFor(waiver.subject);
    object["package"] = patternFor(waiver.package);
    object["reason"] = waiver.reason;
    if (waiver.lastDay) {
        object["expires"] = formatDate(*waiver.lastDay);
    }
    return object;
}

}  // namespace

std::string patternFor(const std::string& text) {
    std::string pattern;
    for (const char c : text) {
        if (kSyntax.find(c) != std::string_view::npos) {
            pattern += '\\';
        }
        pattern += c;
    }
    return pattern;
}

std::string formatWaivers(const std::vector<NewWaiver>& waivers) {
    constexpr int kIndent = 4;
    OrderedJson objects = OrderedJson::array();
    for (const NewWaiver& waiver : waivers) {
        OrderedJson object = toJson(waiver);
        if (std::find(objects.begin(), objects.end(), object) == objects.end()) {
            objects.push_back(std::move(object));
        }
    }
    return OrderedJson{{"waivers", std::move(objects)}}.dump(kIndent) + "\n";
}

}  // namespace pkgvet::cli
