// The check of a rule tree before it is used.
#pragma once

#include <string>
#include <vector>

#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

// One thing that is wrong with a rule tree.
struct Fault {
    std::string file;
    std::string key;  // such as "profiles[2].name"; empty when the fault is the file's own
    std::string cause;
};

// Everything that is wrong with the tree that the configuration file at path leads to, as far as
// profile and its parents use it. Empty when the library can use all of it: it takes what it cannot
// use for empty lists, without a word.
std::vector<Fault> checkRuleTree(const std::string& path, Profiles profile);

}  // namespace pkgvet::cli
