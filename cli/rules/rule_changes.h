// What leads from one rule tree to another, entry by entry.
#pragma once

#include <string>
#include <vector>

#include "cli/base/json_positions.h"
#include "cli/rules/rule_set.h"

namespace pkgvet::cli {

// An entry of a list, or the value of a key, that one of two trees has and the other has not.
struct TreeChange {
    std::string list;  // its list, such as "libraries.allowed", or its key
    std::string text;
    bool isAdded = false;  // otherwise it is removed
    std::string file;      // where it stands or stood
    Position position;     // there
};

// The changes under one profile, in the order of the lists, what was removed first. The order of
// entries and repeats make no change.
std::vector<TreeChange> ruleChanges(const RuleSet& before, const RuleSet& after);

}  // namespace pkgvet::cli
