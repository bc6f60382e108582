// Looks for what rule files are unlikely to mean.
#include "cli/rules/rule_warnings.h"

#include <map>
#include <string_view>

#include "cli/base/strict_json.h"
#include "cli/rules/rule_set.h"

namespace pkgvet::cli {

namespace {

// The library appends names to directories as they stand, so that a slash that is missing makes
// one word of the two.
constexpr std::string_view kDirectorySuffix = "_dir";
constexpr const char* kNoSlash = "does not end in a slash";
constexpr const char* kLenient =
    "is not strict JSON; it is read all the same, but not always as it was meant: ";

void warnAboutDirectories(const std::string& file, const RuleSet& rules,
                          std::vector<Fault>* warnings) {
    for (const RuleScalar& scalar : rules.scalars) {
        if (scalar.name.ends_with(kDirectorySuffix) && !scalar.value.ends_with('/')) {
            warnings->push_back({file, scalar.key, kNoSlash});
        }
    }
}

// The profile's own element comes first; the one that it repeats is the inherited one.
void warnAboutRepeat(const RuleElement& first, const RuleElement& second,
                     std::vector<Fault>* warnings) {
    if (first.file != second.file) {
        warnings->push_back({first.file, first.key, "is inherited already, from " + second.file});
    } else if (first.key != second.key) {  // otherwise profile and parent share the file
        warnings->push_back({second.file, second.key, "repeats " + first.key});
    }
}

void warnAboutRepeats(const RuleSet& rules, std::vector<Fault>* warnings) {
    for (const RuleList& list : rules.lists) {
        std::map<std::string, const RuleElement*> seen;
        for (const RuleElement& element : list.elements) {
            const auto [known, isNew] = seen.emplace(element.text, &element);
            if (!isNew) {
                warnAboutRepeat(*known->second, element, warnings);
            }
        }
    }
}

// The library's own reader drops a single backslash, for example, and does not say so.
void warnAboutLenience(const RuleSet& rules, std::vector<Fault>* warnings) {
    for (const std::string& file : rules.files) {
        for (const Fault& fault : faultsOfJson(file)) {
            warnings->push_back({file, fault.key, kLenient + fault.cause, fault.position});
        }
    }
}

}  // namespace

std::vector<Fault> warnAboutRules(const std::string& path, const std::vector<Profiles>& profiles) {
    std::vector<Fault> warnings;
    for (const Profiles profile : profiles) {
        const RuleSet rules = loadRuleSet(path, profile);
        warnAboutLenience(rules, &warnings);
        warnAboutDirectories(path, rules, &warnings);
        warnings.insert(warnings.end(), rules.dropped.begin(), rules.dropped.end());
        warnAboutRepeats(rules, &warnings);
    }
    return eachOnce(warnings);
}

}  // namespace pkgvet::cli
