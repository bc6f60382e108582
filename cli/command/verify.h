// `pkgvet verify`: whether a record of a verdict holds.
#pragma once

#include <string>

#include "cli/command/check.h"
#include "cli/command/command_table.h"

namespace pkgvet::cli {

struct VerifyOptions {
    std::string record;
    std::string package;
    CheckOptions judging;  // no more of it than bears on a verdict
};

CommandRow verifyCommand(VerifyOptions* options);

// Judges the package again and holds the record against that. Returns kAccepted when it holds,
// kRejected when it does not, and kNotJudged when that could not be found out.
int verify(const VerifyOptions& options);

}  // namespace pkgvet::cli
