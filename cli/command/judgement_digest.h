// What judgements depend on.
#pragma once

#include <string>

#include "cli/command/check.h"
#include "cli/model/model.h"

namespace pkgvet::cli {

// SHA-256 over all that the judgements of run depend on beside the package: the program and its
// libraries, the rules under each profile, the options, trusted keys, schemas and the sandbox. The
// policy is not part of it, since it is applied to judgements that are there. rules is the path of
// the configuration file.
std::string judgementDigest(const CheckOptions& options, const std::string& rules,
                            const RunReport& run);

}  // namespace pkgvet::cli
