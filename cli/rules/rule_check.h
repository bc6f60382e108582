// The check of a rule tree before it is used.
#pragma once

#include <string>
#include <vector>

#include "cli/base/fault.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

// What there is to say against a rule tree, each fault once, with its place in its file.
struct RuleFaults {
    // What the library cannot use: it takes that for empty lists and does not say so.
    std::vector<Fault> unusable;
    // What it reads and then ignores, with all that is below it: tiers, parents and keys of unknown
    // names, and of keys that stand twice the first.
    std::vector<Fault> dropped;
};

// Looks at the tree that the configuration file at path leads to, as far as one of profiles or its
// parents use it.
RuleFaults checkRuleTree(const std::string& path, const std::vector<Profiles>& profiles);
// The same for several trees together. A file that they share is looked at once.
RuleFaults checkRuleTrees(const std::vector<std::string>& paths,
                          const std::vector<Profiles>& profiles);

}  // namespace pkgvet::cli
