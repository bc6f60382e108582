// `pkgvet compare`: what turned between two runs.
#pragma once

#include <string>
#include <vector>

#include "cli/command/command_table.h"
#include "cli/effect/effect_outputs.h"

namespace pkgvet::cli {

struct CompareOptions {
    std::vector<std::string> reports;  // the old one and the new one
    EffectOutputOptions output;
};

CommandRow compareCommand(CompareOptions* options);

// Writes the effect that lies between two reports, to standard output and wherever else the options
// say, and returns the exit status.
int compare(const CompareOptions& options);

}  // namespace pkgvet::cli
