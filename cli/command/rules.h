// The command that looks at rule trees.
#pragma once

#include "cli/command/options.h"

namespace pkgvet::cli {

// Checks, shows or compares rule trees and returns the exit status: kUsageError for a tree that
// cannot be used, and kRejected where two trees differ.
int rules(const RulesOptions& options);

}  // namespace pkgvet::cli
