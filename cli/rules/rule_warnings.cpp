// Looks for what rule files are unlikely to mean.
#include "cli/rules/rule_warnings.h"

#include <map>
#include <string_view>

#include "cli/base/strict_json.h"
#include "cli/rules/fault_locator.h"
#include "cli/rules/rule_set.h"

namespace pkgvet::cli {

namespace {

// The library appends names to directories as they stand, so that a slash that is missing makes
// one word of the two.
constexpr std::string_view kDirectorySuffix = "_dir";
constexpr const char* kNoSlash = "does not end in a slash";
constexpr const char* kEmpty = "is empty and stands for nothing";
constexpr const char* kBlank = "begins or ends with a blank, which must then be in the name too";
constexpr std::string_view kLibraries = "libraries.";
constexpr const char* kBareDot =
    "has a dot that stands for any character; a dot itself is written \\\\.";
// What the strict reader says of an escape that JSON does not know.
constexpr std::string_view kWrongEscape = "forbidden character after backslash";
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

// Whether a dot of pattern stands for one character, whichever it is. One that is repeated, as in
// ".*", is meant so, and one in brackets is a dot.
bool hasBareDot(std::string_view pattern) {
    constexpr std::string_view kRepeats = "*+?{";
    bool isInBrackets = false;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char next = i + 1 < pattern.size() ? pattern[i + 1] : '\0';
        if (pattern[i] == '\\') {
            ++i;
        } else if (pattern[i] == '[' || pattern[i] == ']') {
            isInBrackets = pattern[i] == '[';
        } else if (pattern[i] == '.' && !isInBrackets &&
                   kRepeats.find(next) == std::string_view::npos) {
            return true;
        }
    }
    return false;
}

const char* oddityOf(const RuleElement& element, const std::string& list) {
    if (element.text.empty()) {
        return kEmpty;
    }
    if (element.text.front() == ' ' || element.text.back() == ' ') {
        return kBlank;
    }
    return list.starts_with(kLibraries) && hasBareDot(element.text) ? kBareDot : nullptr;
}

void warnAboutOddities(const RuleSet& rules, std::vector<Fault>* warnings) {
    for (const RuleList& list : rules.lists) {
        for (const RuleElement& element : list.elements) {
            if (const char* oddity = oddityOf(element, list.name)) {
                warnings->push_back({element.file, element.key, oddity});
            }
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
            // A key that stands twice and a wrong escape have rules dropped, which is graver.
            if (!fault.key.empty() || fault.cause.find(kWrongEscape) != std::string::npos) {
                continue;
            }
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
        warnAboutRepeats(rules, &warnings);
        warnAboutOddities(rules, &warnings);
    }
    std::vector<Fault> unique = eachOnce(warnings);
    FaultLocator locator;
    for (Fault& warning : unique) {
        locator.locateValue(&warning);
    }
    return unique;
}

}  // namespace pkgvet::cli
