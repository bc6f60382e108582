// Writes reports out of reports.
#include "cli/command/report.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <utility>

#include "cli/base/escape.h"
#include "cli/base/exit_status.h"
#include "cli/base/terminal.h"
#include "cli/base/text.h"
#include "cli/command/option_conflicts.h"
#include "cli/command/output_guard.h"
#include "cli/command/report_style.h"
#include "cli/policy/policy_options.h"
#include "cli/records/run_difference.h"
#include "cli/records/stored_report.h"
#include "cli/report/reports.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kExitStatuses =
    "Exit status: 0 the reports were written, whatever the verdicts in them; 2 usage error, or a\n"
    "report that cannot be used.";

using StoredReports = std::vector<std::unique_ptr<StoredReport>>;

StoredReports readAll(const std::vector<std::string>& paths) {
    StoredReports reports;
    for (const std::string& path : paths) {
        reports.push_back(std::make_unique<StoredReport>(path));
        const RunReport& run = reports.back()->run();
        const std::string difference = differenceOf(reports.front()->run(), run);
        if (!difference.empty()) {
            throw std::runtime_error(printable(path) + ": was judged " + difference +
                                     ", so that it does not go into one report with " +
                                     printable(paths.front()));
        }
        if (run.shard && paths.size() > 1) {
            throw std::runtime_error(printable(path) +
                                     ": is the report of a shard, which 'pkgvet merge' takes");
        }
    }
    return reports;
}

// All runs as one. What is said of several of them is said once.
RunReport joined(const StoredReports& reports) {
    RunReport run = reports.front()->run();
    for (std::size_t i = 1; i < reports.size(); ++i) {
        const RunReport& next = reports[i]->run();
        run.partial = run.partial || next.partial;
        for (const std::string& notice : next.notices) {
            if (std::find(run.notices.begin(), run.notices.end(), notice) == run.notices.end()) {
                run.notices.push_back(notice);
            }
        }
    }
    return run;
}

}  // namespace

std::vector<Option> rewriteOptions(RewriteOptions* options) {
    std::vector<Option> all = reportOptions(&options->report);
    all.push_back(
        flagOption({"--show-waived"}, &options->showWaived, "Show excused findings as well"));
    return all;
}

Operand rewriteOperand(RewriteOptions* options, const std::string& description) {
    return {.name = "REPORT",
            .description = description,
            .least = 1,
            .takesFiles = true,
            .set = appendTo(&options->inputs)};
}

bool canRewrite(const RewriteOptions& options) {
    const std::string conflict = conflictIn(options.report, options.showWaived);
    if (!conflict.empty()) {
        complain(conflict);
        return false;
    }
    try {
        refuseLossOfFiles(pathsOf(filesOf(options.report)), options.inputs);
    } catch (const std::runtime_error& error) {
        complain(printable(error.what()));
        return false;
    }
    return true;
}

PackageTally rewrite(
    const RewriteOptions& options, RunReport run,
    const std::function<void(const std::function<void(PackageReport)>&)>& forEach) {
    const std::optional<Severity> failOn = valueOf(kFailOnWords, run.provenance.failOn);
    Reports reports(formatsOfStandardOutput(options.report).front(),
                    styleOf(options.report, options.showWaived, failOn), std::cout,
                    filesOf(options.report));
    PackageTally tally;
    std::size_t untimed = 0;
    forEach([&](const PackageReport& package) {
        tally.add(package);
        untimed += package.seconds ? 0 : 1;
        reports.add(package);
        run.dropped.add(package);
    });
    for (const std::string& notice : run.notices) {
        complain(notice);
    }
    if (options.report.timings && untimed > 0) {
        complain("the time that " + counted(untimed, "package") +
                 " took is not known: the run was without --timings");
    }
    reports.finish(run);
    return tally;
}

CommandRow reportCommand(RewriteOptions* options) {
    CommandRow row;
    row.name = "report";
    row.description = "Write reports out of earlier ones";
    row.options = rewriteOptions(options);
    row.operand = rewriteOperand(options, "Reports in the format json or jsonl");
    row.footer = kExitStatuses;
    return row;
}

int report(const RewriteOptions& options) {
    if (!canRewrite(options)) {
        return kUsageError;
    }
    try {
        const StoredReports stored = readAll(options.inputs);
        rewrite(options, joined(stored), [&stored](const auto& receive) {
            for (const std::unique_ptr<StoredReport>& one : stored) {
                for (std::size_t i = 0; i < one->size(); ++i) {
                    receive(one->package(i));
                }
            }
        });
    } catch (const std::runtime_error& error) {
        complain(error.what());
        return kUsageError;
    }
    return statusAfterOutput(kAccepted);
}

}  // namespace pkgvet::cli
