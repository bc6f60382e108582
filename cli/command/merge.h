// `pkgvet merge`: one report out of those of shards.
#pragma once

#include "cli/command/command_table.h"
#include "cli/command/report.h"

namespace pkgvet::cli {

struct MergeOptions {
    RewriteOptions rewriting;
    bool missing = false;  // print which shards have to be run again, and no report
};

CommandRow mergeCommand(MergeOptions* options);

// Writes the report of the whole run in each format that options ask for, and returns the exit
// status of that run. Without all of its shards nothing is written, and the status is kNotJudged.
int merge(const MergeOptions& options);

}  // namespace pkgvet::cli
