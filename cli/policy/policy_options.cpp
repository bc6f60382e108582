// Declares the options on what counts.
#include "cli/policy/policy_options.h"

namespace pkgvet::cli {

std::vector<Option> policyOptions(PolicyOptions* options) {
    return {
        filesOption("--waivers", &options->waivers, "Findings that are excused, with reasons"),
        flagOption({"--show-waived"}, &options->showWaived, "Show excused findings as well"),
        fileOption("--baseline", &options->baseline, "Only findings that FILE does not hold count"),
        fileOption("--write-baseline", &options->writeBaseline,
                   "Write the findings of this run to FILE"),
        choiceOption("--fail-on", kFailOnWords, &options->failOn,
                     "Least severity that rejects a package [as the rules say]"),
        flagOption({"--exit-zero"}, &options->exitZero, "Exit status 0 in place of 1"),
    };
}

}  // namespace pkgvet::cli
