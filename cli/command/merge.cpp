// Has the reports of shards put together.
#include "cli/command/merge.h"

#include <iostream>
#include <stdexcept>
#include <utility>

#include "cli/base/exit_status.h"
#include "cli/base/terminal.h"
#include "cli/base/text.h"
#include "cli/records/shard_merge.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kExitStatuses =
    "Exit status: that of the whole run: 0 every package was accepted; 1 at least one was "
    "rejected;\n"
    "2 usage error; 3 at least one package could not be judged, or a shard has to be run again.";

// In the form in which schedulers of jobs take them.
void printMissing(const std::vector<unsigned>& numbers) {
    std::vector<std::string> words;
    for (const unsigned number : numbers) {
        words.push_back(std::to_string(number));
    }
    std::cout << joined(words, ",") << (words.empty() ? "" : "\n");
}

int statusOf(const PackageTally& tally) {
    if (tally.notJudged > 0) {
        return kNotJudged;
    }
    return tally.rejected > 0 ? kRejected : kAccepted;
}

int mergeShards(const MergeOptions& options) {
    const ShardMerge shards(options.rewriting.inputs);
    for (const std::string& fault : shards.faults()) {
        complain(fault);
    }
    if (options.missing) {
        printMissing(shards.missing());
    }
    if (!shards.faults().empty()) {
        return kNotJudged;
    }
    if (options.missing) {
        return statusAfterOutput(kAccepted);
    }
    return statusAfterOutput(
        statusOf(rewrite(options.rewriting, shards.run(),
                         [&shards](const std::function<void(PackageReport)>& receive) {
                             shards.forEach(receive);
                         })));
}

}  // namespace

CommandRow mergeCommand(MergeOptions* options) {
    CommandRow row;
    row.name = "merge";
    row.description = "Make one report out of those of shards";
    row.options = rewriteOptions(&options->rewriting);
    row.options.push_back(
        flagOption({"--missing"}, &options->missing,
                   "Print the numbers of the shards that have to be run again, and no report"));
    row.operand = rewriteOperand(&options->rewriting,
                                 "The reports of all shards, in the format json or jsonl");
    row.footer = kExitStatuses;
    return row;
}

int merge(const MergeOptions& options) {
    if (!canRewrite(options.rewriting)) {
        return kUsageError;
    }
    try {
        return mergeShards(options);
    } catch (const std::runtime_error& error) {
        complain(error.what());
        return kUsageError;
    }
}

}  // namespace pkgvet::cli
