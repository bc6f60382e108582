// Collects the rules of a profile from its tree.
#include "cli/rules/rule_set.h"

#include <algorithm>
#include <set>

namespace pkgvet::cli {

namespace {

// Null where the set has no list of this name.
RuleList* findList(const std::string& name, RuleSet* rules) {
    const auto found = std::find_if(rules->lists.begin(), rules->lists.end(),
                                    [&name](const RuleList& list) { return list.name == name; });
    return found == rules->lists.end() ? nullptr : &*found;
}

}  // namespace

RuleSet loadRuleSet(const std::string& path, Profiles profile) {
    RuleSet rules;
    // Empty lists are there as well, so that two sets can be compared list by list.
    for (const std::string& name : ruleListNames()) {
        rules.lists.push_back({name, {}});
    }
    RuleTreeVisitor visitor;
    visitor.onFile = [&](const std::string& file) { rules.files.push_back(file); };
    visitor.onScalar = [&](const RuleScalar& scalar) { rules.scalars.push_back(scalar); };
    visitor.onElement = [&](const RuleElement& element, const std::string& name, bool) {
        if (RuleList* list = findList(name, &rules)) {
            list->elements.push_back(element);
        }
    };
    walkRuleTree(path, {profile}, visitor);
    return rules;
}

std::vector<RuleElement> withoutRepeats(const RuleList& list) {
    std::set<std::string> seen;
    std::vector<RuleElement> unique;
    for (const RuleElement& element : list.elements) {
        if (seen.insert(element.text).second) {
            unique.push_back(element);
        }
    }
    return unique;
}

}  // namespace pkgvet::cli
