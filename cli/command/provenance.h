// Where the verdicts of a run come from.
#pragma once

#include <string>

#include "cli/command/check.h"
#include "cli/integrity/keyring.h"
#include "cli/model/model.h"
#include "cli/policy/policy.h"

namespace pkgvet::cli {

// Whether a report says which rules were in force, or somebody else asks. Reading the tree once
// more for that takes time.
bool needsDigests(const CheckOptions& options);

// What decides the verdicts beside the packages: the rules, whose configuration file is at the path
// rules, the keys, the files of the policy, and the options. The limits are told as they were asked
// for.
Provenance provenanceOf(const CheckOptions& options, const std::string& rules,
                        const Keyring& keyring, const Policy::Digests& digests);

}  // namespace pkgvet::cli
