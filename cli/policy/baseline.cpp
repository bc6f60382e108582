// Reads, gathers and formats baselines.
#include "cli/policy/baseline.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/base/escape.h"
#include "cli/base/json_place.h"
#include "cli/base/strict_json.h"
#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::json;
using OrderedJson = nlohmann::ordered_json;

constexpr int kSchemaVersion = 1;
constexpr const char* kVersion = "schema_version";
constexpr const char* kFindings = "findings";
constexpr const char* kPackage = "package";
constexpr const char* kRule = "rule";
constexpr const char* kSubject = "subject";
constexpr const char* kMessage = "message";
constexpr const char* kCount = "count";

// Another version may mean something else by the same keys.
void checkVersion(const JsonReader& reader, const Json& root) {
    const auto version = root.find(kVersion);
    if (version == root.end()) {
        reader.report(kVersion, kMissing);
    } else if (*version != kSchemaVersion) {
        reader.report(kVersion, "is not " + std::to_string(kSchemaVersion));
    }
}

// The count is left out where it is 1, as it nearly always is.
std::size_t readCount(const JsonReader& reader, const Json& object, const std::string& key) {
    const auto count = object.find(kCount);
    if (count == object.end()) {
        return 1;
    }
    if (!count->is_number_unsigned() || *count == 0) {
        reader.report(member(key, kCount), "is not a number above 0");
        return 0;
    }
    return count->get<std::size_t>();
}

KnownFinding readFinding(const JsonReader& reader, const Json& object, const std::string& key) {
    reader.refuseUnknown(object, key, {kPackage, kRule, kSubject, kMessage, kCount});
    KnownFinding finding;
    finding.package = reader.text(object, key, kPackage);
    finding.rule = reader.text(object, key, kRule);
    // No subject and an empty one are not the same.
    if (object.contains(kSubject)) {
        finding.subject = reader.text(object, key, kSubject);
    }
    finding.message = reader.text(object, key, kMessage);
    return finding;
}

OrderedJson toJson(const KnownFinding& finding, std::size_t count) {
    OrderedJson object;
    object[kPackage] = finding.package;
    object[kRule] = finding.rule;
    if (finding.subject) {
        object[kSubject] = *finding.subject;
    }
    object[kMessage] = finding.message;
    if (count > 1) {
        object[kCount] = count;
    }
    return object;
}

}  // namespace

KnownFinding identityOf(const Finding& finding, const std::string& package) {
    KnownFinding known{printable(package), finding.rule, std::nullopt, printable(finding.message)};
    if (finding.subject) {
        known.subject = printable(*finding.subject);
    }
    return known;
}

Baseline readBaseline(const std::string& path, std::vector<Fault>* faults, std::string* digest) {
    JsonReader reader(path, faults);
    const Json root = reader.load();
    if (digest != nullptr) {
        *digest = reader.digest();
    }
    Baseline baseline;
    if (root.is_null()) {
        return baseline;
    }
    reader.refuseUnknown(root, std::string(), {kVersion, kFindings});
    checkVersion(reader, root);
    for (const auto& [key, object] : reader.objects(root, std::string(), kFindings)) {
        const KnownFinding finding = readFinding(reader, object, key);
        // Lists that were put together by hand may hold a finding twice.
        baseline[finding] += readCount(reader, object, key);
    }
    return baseline;
}

void collect(const PackageReport& package, Baseline* baseline) {
    for (const Judgement& judgement : package.judgements) {
        Baseline own;
        for (const Finding& finding : judgement.findings) {
            if (!isGrave(finding) && finding.standing != Standing::Waived) {
                ++own[identityOf(finding, package.name)];
            }
        }
        for (const auto& [finding, count] : own) {
            // Profiles find much the same. Added up, the findings of one would hide new ones under
            // another.
            std::size_t& most = (*baseline)[finding];
            most = std::max(most, count);
        }
    }
}

// The map keeps the findings sorted.
std::string formatBaseline(const Baseline& baseline) {
    OrderedJson findings = OrderedJson::array();
    for (const auto& [finding, count] : baseline) {
        findings.push_back(toJson(finding, count));
    }
    OrderedJson root;
    root[kVersion] = kSchemaVersion;
    root[kFindings] = std::move(findings);
    return root.dump(2) + "\n";
}

}  // namespace pkgvet::cli
