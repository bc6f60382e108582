// The one walk over a rule tree, which everything that looks at one visits.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/fault.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

// A text where it stands.
struct RuleElement {
    std::string text;
    std::string file;
    std::string key;  // its place there, such as "libraries[0].list[3]"
};

struct RuleScalar {
    std::string name;  // its key in the configuration file
    std::string value;
    std::string key;
};

// What is told of a tree. Whoever needs less leaves the rest as it is. Integers and truth values
// come as text. One that stands where something else belongs is a fault and comes all the same, so
// that a tree with faults still shows what it can.
struct RuleTreeVisitor {
    // Something that the library cannot use, or would take for empty without saying so.
    std::function<void(const Fault&)> onFault = [](const Fault&) {};

    // A file that was read.
    std::function<void(const std::string& file)> onFile = [](const std::string&) {};

    // A value of "dirs" or of a chosen profile. Values of parents are not inherited, so they are
    // not told.
    std::function<void(const RuleScalar&)> onScalar = [](const RuleScalar&) {};

    // An element of the list of this name. The name is not one of ruleListNames() where the list
    // stands in a tier of an unknown name. isPattern is false for exact names, and for what is not
    // even a string.
    std::function<void(const RuleElement&, const std::string& list, bool isPattern)> onElement =
        [](const RuleElement&, const std::string&, bool) {};

    // The name of a tier or of a parent that does not exist, which the library ignores.
    std::function<void(const RuleElement& name)> onUnknownTier = [](const RuleElement&) {};
    std::function<void(const RuleElement& name)> onUnknownParent = [](const RuleElement&) {};

    // A key that means nothing where it stands, in place of one of known. What is below it is not
    // read.
    std::function<void(const RuleElement& key, const std::vector<std::string>& known)>
        onUnknownKey = [](const RuleElement&, const std::vector<std::string>&) {};

    // Whether to read the file at path for the array that it has under contentKey. Profiles that
    // have a parent in common come to its files again and again.
    std::function<bool(const std::string& path, std::string_view contentKey)> entersListFile =
        [](const std::string&, std::string_view) { return true; };
};

// Walks what the configuration file at path leads to: the file itself, the disallowed components,
// then for each of profiles its list files and its keys, and those of its parents in turn.
void walkRuleTree(const std::string& path, const std::vector<Profiles>& profiles,
                  const RuleTreeVisitor& visitor);

// The names by which a tree knows its tiers, and those of the profiles that can be parents.
std::vector<std::string> tierNames();
std::vector<std::string> parentNames();

// The names of all lists in a tree, such as "paths" or "libraries.allowed".
std::vector<std::string> ruleListNames();

}  // namespace pkgvet::cli
