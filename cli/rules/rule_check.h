// The check of a rule tree before it is used.
#pragma once

#include <string>
#include <vector>

#include "cli/base/fault.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

// Everything that is wrong with the tree that the configuration file at path leads to, as far as
// one of profiles or its parents use it, each fault once. Empty when the library can use all of it:
// it takes what it cannot use for empty lists and does not say so.
std::vector<Fault> checkRuleTree(const std::string& path, const std::vector<Profiles>& profiles);

}  // namespace pkgvet::cli
