// What there is to see of a rule tree.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "cli/base/fault.h"
#include "cli/rules/rule_set.h"

namespace pkgvet::cli {

// Faults and warnings, one to a line, and their numbers.
void writeRuleCheck(const std::vector<Fault>& faults, const std::vector<Fault>& warnings,
                    std::ostream& stream);

// The effective rules: each list without repeats, each element with the file that it comes from.
void writeRulesAsText(const RuleSet& rules, std::ostream& stream);
void writeRulesAsJson(const RuleSet& rules, std::ostream& stream);

// What became of one list, or of one key, which counts as a list of one element.
struct ListDifference {
    std::string name;
    std::vector<std::string> removed;
    std::vector<std::string> added;
};

// What leads from one set of rules to the other, without what stays the same. The order of elements
// and repeats mean nothing to the library and so make no difference.
std::vector<ListDifference> compareRules(const RuleSet& before, const RuleSet& after);

// Under the name of each list "-" with what went and "+" with what came.
void writeDifferencesAsText(const std::vector<ListDifference>& differences, std::ostream& stream);
void writeDifferencesAsJson(const std::vector<ListDifference>& differences, std::ostream& stream);

}  // namespace pkgvet::cli
