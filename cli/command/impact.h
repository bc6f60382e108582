// `pkgvet impact`: what a change of the rules does to packages.
#pragma once

#include <string>

#include "cli/command/check.h"
#include "cli/command/command_table.h"
#include "cli/effect/effect_outputs.h"

namespace pkgvet::cli {

struct ImpactOptions {
    std::string before;  // configuration files
    std::string after;
    EffectOutputOptions output;
    CheckOptions judging;  // no more of it than bears on verdicts
};

CommandRow impactCommand(ImpactOptions* options);

// Judges each package under both trees on one unpacking. Returns kAccepted when no verdict turns,
// kRejected when one does, and otherwise what `pkgvet check` would.
int impact(const ImpactOptions& options);

}  // namespace pkgvet::cli
