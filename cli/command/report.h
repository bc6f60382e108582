// `pkgvet report`: other formats of runs that are over.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/command/command_table.h"
#include "cli/model/model.h"
#include "cli/report/report_options.h"

namespace pkgvet::cli {

// What `pkgvet report` and `pkgvet merge` have in common.
struct RewriteOptions {
    std::vector<std::string> inputs;
    ReportOptions report;
    bool showWaived = false;
};

std::vector<Option> rewriteOptions(RewriteOptions* options);
Operand rewriteOperand(RewriteOptions* options, const std::string& description);

// Whether the options make sense and no output takes the place of another file. Says on standard
// error what is wrong.
bool canRewrite(const RewriteOptions& options);

// Writes the reports of run, which has no packages of its own: forEach hands them on. Returns how
// many of them there were of each kind.
PackageTally rewrite(const RewriteOptions& options, RunReport run,
                     const std::function<void(const std::function<void(PackageReport)>&)>& forEach);

CommandRow reportCommand(RewriteOptions* options);

// Writes what options ask for out of the reports that they name, one run behind the other, and
// returns the exit status. Each format is the one that the run itself would have written.
int report(const RewriteOptions& options);

}  // namespace pkgvet::cli
