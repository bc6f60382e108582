// How the judges of a run are set up.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/command/check.h"
#include "cli/integrity/keyring.h"
#include "cli/worker/judge_pool.h"

namespace pkgvet::cli {

// What packages are judged by.
struct Judging {
    PoolOptions options;
    std::unique_ptr<TemplateProcess> from;
};

// What the options come to for the pool of judges. trees are the paths of configuration files: a
// package has the judgements under the first one, a profile each, and then those under the next.
// The process that it starts looks at the machine while the caller looks at the trees, and reads
// them once it is told to prepare. Options and keyring outlive the result, since the judges are
// made of them.
Judging beginJudging(const CheckOptions& options, const std::vector<std::string>& trees,
                     const Keyring& keyring);

// Whether violations reject a package. Reads the rules where that depends on the platform.
bool isValidationEnabled(const JudgingOptions& options, const std::string& rules);

}  // namespace pkgvet::cli
