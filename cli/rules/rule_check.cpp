// Collects the faults of a rule tree.
#include "cli/rules/rule_check.h"

#include <set>
#include <string_view>
#include <utility>

#include "cli/rules/rule_tree_walk.h"
#include "pkgvet/pattern/pattern_list.h"

namespace pkgvet::cli {

namespace {

void checkPattern(const RuleElement& element, std::vector<Fault>* faults) {
    if (const auto cause = WholePattern(element.text).fault()) {
        faults->push_back({element.file, element.key, kNotARegularExpression + *cause});
    }
}

}  // namespace

std::vector<Fault> checkRuleTree(const std::string& path, const std::vector<Profiles>& profiles) {
    std::vector<Fault> faults;
    // Files and what they are to hold. Profiles share files, and compiling patterns takes time.
    std::set<std::pair<std::string, std::string>> entered;
    RuleTreeVisitor visitor;
    visitor.onFault = [&](const Fault& fault) { faults.push_back(fault); };
    visitor.onElement = [&](const RuleElement& element, const std::string&, bool isPattern) {
        if (isPattern) {
            checkPattern(element, &faults);
        }
    };
    visitor.entersListFile = [&](const std::string& file, std::string_view contentKey) {
        return entered.emplace(file, contentKey).second;
    };
    walkRuleTree(path, profiles, visitor);
    return eachOnce(faults);  // profiles that share a parent share its faults
}

}  // namespace pkgvet::cli
