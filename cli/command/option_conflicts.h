// Options of `pkgvet check` that contradict one another or come to nothing.
#pragma once

#include <string>

#include "cli/command/check.h"

namespace pkgvet::cli {

// What is wrong with options taken together; empty when they make sense. An option without effect
// is as bad as a contradiction: whoever gave it believes that it has one.
std::string conflictIn(const CheckOptions& options);

// The same of the options on reports alone.
std::string conflictIn(const ReportOptions& report, bool showWaived);

}  // namespace pkgvet::cli
