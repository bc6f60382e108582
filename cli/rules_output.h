// What there is to see of a rule tree.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "cli/fault.h"
#include "cli/rule_set.h"

namespace pkgvet::cli {

// Faults and warnings, one to a line, and their numbers.
void writeRuleCheck(const std::vector<Fault>& faults, const std::vector<Fault>& warnings,
                    std::ostream& stream);

// The effective rules: each list without repeats, each element with the file that it comes from.
void writeRulesAsText(const RuleSet& rules, std::ostream& stream);
void writeRulesAsJson(const RuleSet& rules, std::ostream& stream);

// What leads from one set of rules to the other: under the name of each list or key that differs,
// "-" with what went and "+" with what came. The order of elements and repeats mean nothing to the
// library and so make no difference. Returns whether there was any.
bool writeRuleDifference(const RuleSet& before, const RuleSet& after, std::ostream& stream);

}  // namespace pkgvet::cli
