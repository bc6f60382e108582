// The rules of a profile with the places that they come from.
#pragma once

#include <string>
#include <vector>

#include "cli/rules/rule_tree_walk.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

struct RuleList {
    std::string name;  // one of ruleListNames()
    std::vector<RuleElement> elements;
};

// What a Configuration is made of, in the same order, parents included. Unlike there, a permission
// that occurs twice stands here twice.
struct RuleSet {
    std::vector<RuleScalar> scalars;
    std::vector<RuleList> lists;
    std::vector<std::string> files;  // those that were read, in their order
};

// Reads the tree that the configuration file at path leads to. What cannot be read is left out, so
// that a tree with faults still gives what it can.
RuleSet loadRuleSet(const std::string& path, Profiles profile);

// The texts of the list, each once, in their order.
std::vector<RuleElement> withoutRepeats(const RuleList& list);

}  // namespace pkgvet::cli
