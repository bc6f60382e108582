// The command that judges packages.
#pragma once

#include <string>
#include <vector>

#include "cli/command/command_table.h"
#include "cli/command/input.h"
#include "cli/integrity/integrity_options.h"
#include "cli/policy/policy_options.h"
#include "cli/report/report_options.h"
#include "cli/worker/judging_options.h"

namespace pkgvet::cli {

struct SettingsOptions {
    bool isolated = false;  // without project file
    bool show = false;      // print what is in force in place of judging
};

// An option of the command line, as it was given.
struct GivenOption {
    std::string name;      // the long one, such as "--timeout"
    std::string argument;  // empty for a flag
    bool addsUp = false;   // otherwise the last one counts
};

struct CheckOptions {
    std::vector<GivenOption> given;     // in their order
    std::vector<GivenOption> defaults;  // of options, in the words of their help
    SettingsOptions settings;
    InputOptions input;
    JudgingOptions judging;
    IntegrityOptions integrity;
    PolicyOptions policy;
    ReportOptions report;
};

CommandRow checkCommand(CheckOptions* options);

// Judges the packages in order, each as far as it can be judged, and returns the exit status.
// Findings and verdicts go to standard output, all else to standard error.
int check(const CheckOptions& given);

}  // namespace pkgvet::cli
