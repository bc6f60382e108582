// The check of a rule tree before it is used.
#pragma once

#include <string>
#include <vector>

#include "cli/fault.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

// Everything that is wrong with the tree that the configuration file at path leads to, as far as
// profile and its parents use it. Empty when the library can use all of it: it takes what it cannot
// use for empty lists, without a word.
std::vector<Fault> checkRuleTree(const std::string& path, Profiles profile);

// The same for all six profiles, each fault once.
std::vector<Fault> checkRuleTree(const std::string& path);

}  // namespace pkgvet::cli
