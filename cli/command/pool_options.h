// How the judges of a run are set up.
#pragma once

#include <string>
#include <vector>

#include "cli/command/check.h"
#include "cli/integrity/keyring.h"
#include "cli/worker/judge_pool.h"

namespace pkgvet::cli {

// What the options come to for the pool of judges. trees are the paths of configuration files: a
// package has the judgements under the first one, a profile each, and then those under the next.
// Options and keyring outlive the result, since the judges are made of them.
PoolOptions poolOptions(const CheckOptions& options, const std::vector<std::string>& trees,
                        const Keyring& keyring);

// Whether violations reject a package. Reads the rules where that depends on the platform.
bool isValidationEnabled(const JudgingOptions& options, const std::string& rules);

}  // namespace pkgvet::cli
