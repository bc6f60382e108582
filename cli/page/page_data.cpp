// Writes the data of the page.
#include "cli/page/page_data.h"

#include <nlohmann/json.hpp>
#include <numeric>
#include <string>
#include <string_view>

#include "cli/base/escape.h"
#include "cli/catalogue/catalogue.h"
#include "cli/model/kept_packages.h"
#include "cli/page/finding_groups.h"
#include "cli/page/finding_kinds.h"
#include "cli/page/html.h"
#include "cli/page/package_keys.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;

// What a judgement decided, as the scripts of the page read it.
enum JudgementBits : unsigned { kPasses = 1, kAccepted = 2, kIntact = 4 };

// Enough to tell the findings of a run apart; the scripts look at no more of a whole fingerprint.
constexpr std::size_t kPrintSize = 12;

void put(const char* key, const std::string& text, Json* json) {
    if (!text.empty()) {
        (*json)[key] = printable(text);
    }
}

// Kinds with how many findings each has, in turns. The subjects stand in the part of the page that
// needs no scripts: a second copy would take a third of the page.
void putFindings(const PackageReport& package, FindingKinds* kinds, Json* json) {
    Json findings = Json::array();
    std::string prints;
    for (const FindingGroup& group : groupsOf(package, kinds)) {
        findings.push_back(group.kind);
        findings.push_back(group.findings.size());
        for (const Finding* finding : group.findings) {
            prints += fingerprintOf(package.name, *finding).substr(0, kPrintSize);
        }
    }
    if (!findings.empty()) {
        (*json)["findings"] = std::move(findings);
        (*json)["prints"] = prints;
    }
}

void putJudgements(const PackageReport& package, std::size_t usual, FindingKinds* kinds,
                   Json* json) {
    Json judgements = Json::array();
    std::vector<std::size_t> profiles;
    for (const Judgement& judgement : package.judgements) {
        judgements.push_back((judgement.passes ? kPasses : 0U) |
                             (judgement.accepted() ? kAccepted : 0U) |
                             (judgement.intact ? kIntact : 0U));
        profiles.push_back(kinds->profile(judgement.profile));
    }
    std::vector<std::size_t> expected(usual);
    std::iota(expected.begin(), expected.end(), 0U);
    // Packages of runs that were put together may have been judged under different profiles.
    if (profiles != expected) {
        (*json)["profiles"] = std::move(profiles);
    }
    (*json)["judgements"] = std::move(judgements);
}

// usual is the number of the profiles that the run asked for, which come first.
Json packageJson(const PackageReport& package, const std::string& key, std::size_t usual,
                 FindingKinds* kinds) {
    Json json;
    json["key"] = key;
    put("path", package.path, &json);
    put("name", package.name, &json);
    put("version", package.version, &json);
    put("release", package.release, &json);
    put("arch", package.arch, &json);
    put("sha256", package.sha256 == key ? std::string() : package.sha256, &json);
    put("cause", package.cause, &json);
    put("code", std::string(causeCodeName(package.causeCode)), &json);
    put("last", package.lastErrorLine, &json);
    put("incomplete", package.incomplete, &json);
    if (!package.validationEnabled) {
        json["unvalidated"] = true;
    }
    putJudgements(package, usual, kinds, &json);
    putFindings(package, kinds, &json);
    return json;
}

Json kindsJson(const FindingKinds& kinds, Numbers* rules) {
    Json json = Json::array();
    for (const FindingKind* kind : kinds.all()) {
        Json one = {{"rule", rules->of(kind->rule)},
                    {"severity", static_cast<int>(kind->severity)},
                    {"standing", static_cast<int>(kind->standing)},
                    {"subject", kind->hasSubject},
                    {"text", kind->text},
                    {"profiles", kind->profiles}};
        put("reason", kind->reason, &one);
        if (kind->count > 1) {
            one["count"] = kind->count;
        }
        json.push_back(std::move(one));
    }
    return json;
}

std::size_t chapterNumber(const Entry& entry) {
    return static_cast<std::size_t>(&chapterOf(entry) - chapters().data());
}

Json ruleJson(const std::string& id) {
    Json json = {{"id", printable(id)}};
    if (const Entry* entry = findEntry(id)) {
        json["title"] = entry->title;
        json["chapter"] = chapterNumber(*entry);
        json["place"] = entry - chapterOf(*entry).entries.data();
        json["grave"] = entry->grave;
        json["demand"] = entry->demand;
        json["why"] = entry->why;
        json["fix"] = entry->fix;
        json["example"] = entry->example;
        json["uri"] = helpUri(id);
    }
    return json;
}

Json chaptersJson() {
    Json json = Json::array();
    for (const Chapter& chapter : chapters()) {
        json.push_back(chapter.title);
    }
    return json;
}

Json rulesJson(const Numbers& rules) {
    Json json = Json::array();
    for (const std::string& id : rules.texts()) {
        json.push_back(ruleJson(id));
    }
    return json;
}

Json profilesJson(const FindingKinds& kinds) {
    Json json = Json::array();
    for (const std::string& profile : kinds.profiles()) {
        json.push_back(printable(profile));
    }
    return json;
}

}  // namespace

void writePageData(const RunReport& run, bool showTimings, std::ostream& stream) {
    FindingKinds kinds(run);
    PackageKeys keys;
    const std::size_t usual = kinds.profiles().size();
    stream << "{\"packages\":[";
    std::string_view separator = "\n";
    forEachPackage(run, [&](const PackageReport& package) {
        Json json = packageJson(package, keys.of(package), usual, &kinds);
        if (showTimings && package.seconds) {
            json["seconds"] = *package.seconds;
        }
        stream << separator << scriptJson(json);
        separator = ",\n";
    });
    Numbers rules;
    // The page explains why a package was not judged, too.
    rules.of("not-judged");
    const Json kindList = kindsJson(kinds, &rules);
    stream << "],\n\"kinds\":" << scriptJson(kindList)
           << ",\n\"rules\":" << scriptJson(rulesJson(rules))
           << ",\n\"chapters\":" << scriptJson(chaptersJson())
           << ",\n\"profiles\":" << scriptJson(profilesJson(kinds)) << ",\n\"usual\":" << usual
           << ",\n\"failOn\":" << scriptJson(run.provenance.failOn) << "}";
}

}  // namespace pkgvet::cli
