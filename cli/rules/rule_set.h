// The rules of a profile with the places that they come from.
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "cli/base/fault.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

// An element of a list.
struct RuleElement {
    std::string text;
    std::string file;
    std::string key;  // its place there, such as "libraries[0].list[3]"
};

struct RuleList {
    std::string name;  // such as "paths" or "libraries.allowed"
    std::vector<RuleElement> elements;
};

struct RuleScalar {
    std::string name;  // its key in the configuration file
    std::string value;
    std::string key;
};

// What a Configuration is made of, in the same order, parents included. Unlike there, a permission
// that occurs twice stands here twice.
struct RuleSet {
    std::vector<RuleScalar> scalars;
    std::vector<RuleList> lists;
    // What the library reads and drops without a word: tiers and parents of unknown names.
    std::vector<Fault> dropped;
    std::vector<std::string> files;  // those that were read, in their order
};

// Reads the tree that the configuration file at path leads to. What cannot be read is left out, so
// that a tree with faults still gives what it can.
RuleSet loadRuleSet(const std::string& path, Profiles profile);

// The texts of the list, each once, in their order.
std::vector<RuleElement> withoutRepeats(const RuleList& list);

}  // namespace pkgvet::cli
