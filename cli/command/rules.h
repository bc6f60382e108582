// The commands on rule trees.
#pragma once

#include <string>
#include <vector>

#include "cli/command/command_table.h"
#include "cli/report/formats.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

enum class RulesAction { Check, Show, Diff };

struct RulesOptions {
    RulesAction action = RulesAction::Check;
    std::vector<std::string> trees;  // none: the tree that comes with the program; two for Diff
    std::vector<Profiles> profiles;  // none: all for Check, else the regular one
    Format format = Format::Text;    // or Json
};

CommandRow rulesCommand(RulesOptions* options);

// Checks, shows or compares rule trees and returns the exit status: kUsageError for a tree that
// cannot be used, and kRejected where two trees differ.
int rules(const RulesOptions& options);

}  // namespace pkgvet::cli
