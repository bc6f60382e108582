// The command that judges packages.
#pragma once

#include "cli/command/options.h"

namespace pkgvet::cli {

// Judges the packages in order, each as far as it can be judged, and returns the exit status.
// Findings and verdicts go to standard output, all else to standard error.
int check(const CheckOptions& options);

}  // namespace pkgvet::cli
