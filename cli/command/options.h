// The command line.
#pragma once

#include <optional>

#include "cli/command/check.h"
#include "cli/command/command_table.h"
#include "cli/command/compare.h"
#include "cli/command/explain.h"
#include "cli/command/impact.h"
#include "cli/command/merge.h"
#include "cli/command/report.h"
#include "cli/command/rules.h"
#include "cli/command/verify.h"
#include "cli/command/waive.h"

namespace pkgvet::cli {

enum class Command { Check, Compare, Explain, Impact, Merge, Report, Rules, Verify, Waive };

// What a command line asks for. Only the options of its command mean anything.
struct Options {
    Command command = Command::Check;
    CheckOptions check;
    CompareOptions compare;
    ExplainOptions explain;
    ImpactOptions impact;
    MergeOptions merge;
    RewriteOptions report;
    RulesOptions rules;
    VerifyOptions verify;
    WaiveOptions waive;
};

// All commands of the program, bound to options, which must outlive the table.
CommandRow commandTable(Options* options);

// Reads a command line by table, which sets what the table is bound to. Returns the exit status
// when nothing is left to do, since help was shown or the line was wrong.
std::optional<int> parseCommandLine(const CommandRow& table, int argc, const char* const* argv);

}  // namespace pkgvet::cli
