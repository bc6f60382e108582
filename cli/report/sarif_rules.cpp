// Describes the rules of a SARIF document.
#include <set>

#include "cli/base/version.h"
#include "cli/catalogue/catalogue.h"
#include "cli/report/markdown.h"
#include "cli/report/sarif_parts.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;

// Code-scanning pages show a rule as critical by a score above 9, in rules tagged like this alone.
constexpr const char* kGraveScore = "9.3";
constexpr const char* kSecurityTag = "security";

// The title of the chapter as one word, such as "package-header".
std::string chapterTag(const Entry& entry) {
    std::string tag;
    for (const char c : std::string(chapterOf(entry).title)) {
        tag += c == ' ' ? '-' : static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    }
    return tag;
}

Json propertiesJson(const Entry& entry) {
    Json properties = {{"tags", Json::array({chapterTag(entry)})}};
    if (entry.grave) {
        properties["tags"].push_back(kSecurityTag);
        properties["security-severity"] = kGraveScore;
    }
    return properties;
}

// A rule that the catalogue does not know, as in a report of a later version, has its id alone.
Json ruleJson(const std::string& id) {
    Json rule = {{"id", id}};
    const Entry* entry = findEntry(id);
    if (entry == nullptr) {
        return rule;
    }
    rule["shortDescription"] = sarifMessage(entry->title);
    rule["fullDescription"] =
        sarifMessage(std::string(entry->demand) + " " + std::string(entry->why));
    rule["helpUri"] = helpUri(entry->id);
    rule["help"] = sarifMessage(std::string(entry->fix) + "\n\n" + std::string(entry->example));
    rule["help"]["markdown"] = markdownOf(*entry, kAnyWidth);
    rule["defaultConfiguration"] = {{"level", sarifLevel(entry->severity)}};
    rule["properties"] = propertiesJson(*entry);
    return rule;
}

}  // namespace

SarifRules sarifRules(std::span<const SarifResult> results, const std::vector<std::string>& rules) {
    std::set<std::uint32_t> numbers;
    for (const SarifResult& result : results) {
        numbers.insert(result.rule);
    }
    SarifRules told;
    for (const std::uint32_t number : numbers) {
        told.emplace(rules[number], 0);
    }
    std::size_t place = 0;
    for (auto& rule : told) {
        rule.second = place++;
    }
    return told;
}

Json sarifTool(const SarifRules& rules, const std::string& version) {
    Json list = Json::array();
    for (const auto& rule : rules) {
        list.push_back(ruleJson(rule.first));
    }
    return {{"driver",
             {{"name", "pkgvet"},
              {"informationUri", programHomepage()},
              {"version", version},
              {"semanticVersion", version},
              {"rules", std::move(list)}}}};
}

}  // namespace pkgvet::cli
