// What the user decides about how packages are judged.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/base/option.h"
#include "cli/worker/limits.h"
#include "cli/worker/sandbox.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

enum class ValidationMode { Auto, On, Off };

// "auto", "on" or "off".
std::string_view validationName(ValidationMode mode);

struct JudgingOptions {
    std::string rules;               // empty: the tree that comes with the program
    std::vector<Profiles> profiles;  // none: the regular one
    ValidationMode validation = ValidationMode::Auto;
    unsigned jobs = 0;  // 0: as many as there are processors for this process
    SandboxMode sandbox = SandboxMode::Auto;
    std::string scratch;  // a directory to unpack in; empty: in memory
    Limits limits;
    bool limitsUnpacked = false;  // whether the user set the limit on what is unpacked
};

std::vector<Option> judgingOptions(JudgingOptions* options);

}  // namespace pkgvet::cli
