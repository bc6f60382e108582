// What a rule tree comes to, in one word.
#pragma once

#include <string>

#include "cli/rules/rule_set.h"

namespace pkgvet::cli {

// SHA-256 in hexadecimal of the rules that are in force: the same for trees that judge alike,
// whatever their files are called, how their lists are divided among parents, and in what order.
std::string digestOf(const RuleSet& rules);

}  // namespace pkgvet::cli
