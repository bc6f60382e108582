// Where the verdicts of a run come from.
#pragma once

#include <string>

#include "cli/command/check.h"
#include "cli/model/model.h"

namespace pkgvet::cli {

// What decides the verdicts beside the packages: the rules, whose configuration file is at the path
// rules, and the options. The limits are told as they were asked for.
Provenance provenanceOf(const CheckOptions& options, const std::string& rules);

}  // namespace pkgvet::cli
