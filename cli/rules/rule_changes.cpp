// Finds where the differences of two trees stand.
#include "cli/rules/rule_changes.h"

#include <algorithm>

#include "cli/rules/fault_locator.h"
#include "cli/rules/rules_output.h"

namespace pkgvet::cli {

namespace {

// Of an entry that stands in several files, the first place.
RuleElement elementOf(const RuleSet& rules, const std::string& list, const std::string& text) {
    for (const RuleList& one : rules.lists) {
        const auto found =
            std::find_if(one.elements.begin(), one.elements.end(),
                         [&text](const RuleElement& element) { return element.text == text; });
        if (one.name == list && found != one.elements.end()) {
            return *found;
        }
    }
    // The values of keys stand in the configuration file, which is read first.
    const std::string file = rules.files.empty() ? std::string() : rules.files.front();
    for (const RuleScalar& scalar : rules.scalars) {
        if (scalar.name == list) {
            return {text, file, scalar.key};
        }
    }
    return {text, file, std::string()};
}

void add(const std::vector<std::string>& texts, const std::string& list, const RuleSet& rules,
         bool isAdded, FaultLocator* locator, std::vector<TreeChange>* changes) {
    for (const std::string& text : texts) {
        const RuleElement element = elementOf(rules, list, text);
        changes->push_back({list, text, isAdded, element.file,
                            locator->positionsIn(element.file).nearest(element.key)});
    }
}

}  // namespace

std::vector<TreeChange> ruleChanges(const RuleSet& before, const RuleSet& after) {
    FaultLocator locator;
    std::vector<TreeChange> changes;
    for (const ListDifference& difference : compareRules(before, after)) {
        add(difference.removed, difference.name, before, false, &locator, &changes);
        add(difference.added, difference.name, after, true, &locator, &changes);
    }
    return changes;
}

}  // namespace pkgvet::cli
