// Holds two reports against one another.
#include "cli/command/compare.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>

#include "cli/base/escape.h"
#include "cli/base/exit_status.h"
#include "cli/base/terminal.h"
#include "cli/command/output_guard.h"
#include "cli/effect/effect_builder.h"
#include "cli/records/package_matching.h"
#include "cli/records/stored_report.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kExitStatuses =
    "Exit status: 0 no verdict turns; 1 at least one does; 2 usage error, or a report that cannot "
    "be\nused; 3 a package could not be judged, or a report is partial (3 outranks 1).";

// A report with what its packages are known by.
struct Side {
    explicit Side(const std::string& path)
        : report(path, [this](const PackageReport& package) {
              identities.push_back(identityOf(package));
          }) {}

    std::vector<PackageIdentity> identities;
    StoredReport report;
};

// Without one, nothing would be compared, and all would seem well.
bool hasCommonProfile(const Provenance& one, const Provenance& other) {
    return std::any_of(one.profiles.begin(), one.profiles.end(), [&](const ProfileRules& profile) {
        return std::any_of(other.profiles.begin(), other.profiles.end(),
                           [&](const ProfileRules& second) { return second.name == profile.name; });
    });
}

Effect effectBetween(const Side& before, const Side& after) {
    EffectBuilder builder;
    std::vector<bool> isMatched(before.identities.size(), false);
    const auto matches = matched(before.identities, after.identities);
    for (std::size_t i = 0; i < matches.size(); ++i) {
        const PackageReport package = after.report.package(i);
        if (matches[i]) {
            isMatched[*matches[i]] = true;
            builder.compare(before.report.package(*matches[i]), package);
        } else {
            builder.add(package);
        }
    }
    for (std::size_t i = 0; i < isMatched.size(); ++i) {
        if (!isMatched[i]) {
            builder.remove(before.report.package(i));
        }
    }
    return builder.take();
}

EffectSide describe(const Side& side) {
    const RunReport& run = side.report.run();
    return {side.report.path(), run.provenance.version, run.provenance.profiles, run.partial};
}

// Of a run that was interrupted nobody knows what it would have found.
bool isWhole(const Side& side) {
    if (side.report.run().partial) {
        complain(printable(side.report.path()) + ": is partial: its run was interrupted");
    }
    return !side.report.run().partial;
}

int compareReports(const CompareOptions& options) {
    refuseLossOfFiles(pathsOf(filesAmong(options.output.outputs)), options.reports);
    EffectOutputs outputs(options.output);
    const Side before(options.reports.front());
    const Side after(options.reports.back());
    if (!hasCommonProfile(before.report.run().provenance, after.report.run().provenance)) {
        throw std::runtime_error("the two runs have no profile in common");
    }
    // Both are looked at in any case, so that both are told.
    const bool isOldWhole = isWhole(before);
    const bool areWhole = isWhole(after) && isOldWhole;
    Effect effect = effectBetween(before, after);
    effect.before = describe(before);
    effect.after = describe(after);
    effect.partial = !areWhole;
    if (effect.compared == 0) {
        throw std::runtime_error("the two runs have no package in common");
    }
    outputs.write(effect, std::cout);
    return statusAfterOutput(areWhole ? statusOf(effect) : kNotJudged);
}

}  // namespace

CommandRow compareCommand(CompareOptions* options) {
    CommandRow row;
    row.name = "compare";
    row.description = "Tell what turned between two runs";
    row.options = effectOutputOptions(&options->output);
    row.operand = {.name = "REPORT",
                   .description = "The old and the new report, in the format json or jsonl",
                   .least = 2,
                   .most = 2,
                   .takesFiles = true,
                   .set = appendTo(&options->reports)};
    row.footer = kExitStatuses;
    return row;
}

int compare(const CompareOptions& options) {
    const std::string conflict = conflictIn(options.output);
    if (!conflict.empty()) {
        complain(conflict);
        return kUsageError;
    }
    try {
        return compareReports(options);
    } catch (const std::runtime_error& error) {
        complain(error.what());
        return kUsageError;
    }
}

}  // namespace pkgvet::cli
