// What the user decides about how packages are judged.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/base/option.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

enum class ValidationMode { Auto, On, Off };

// "auto", "on", "off".
std::string_view validationName(ValidationMode mode);

struct JudgingOptions {
    std::string rules;  // empty: the tree that comes with the program
    std::vector<Profiles> profiles = {Profiles::Regular};
    ValidationMode validation = ValidationMode::Auto;
    unsigned jobs = 0;  // 0: as many as there are processors for this process
    double timeout = 120;
};

std::vector<Option> judgingOptions(JudgingOptions* options);

// What the program hands to itself when it judges a package in a process of its own.
struct WorkerOptions {
    std::string rules;
    std::vector<Profiles> profiles;
    ValidationMode validation = ValidationMode::Auto;
    std::string package;
};

std::vector<Option> workerOptions(WorkerOptions* options);
Operand workerOperand(WorkerOptions* options);

}  // namespace pkgvet::cli
