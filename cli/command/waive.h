// `pkgvet waive`: waivers for what a report found.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/base/date.h"
#include "cli/command/command_table.h"

namespace pkgvet::cli {

struct WaiveOptions {
    std::string report;
    std::vector<std::string> rules;     // none: all that count
    std::vector<std::string> subjects;  // likewise
    std::string reason;
    std::optional<Date> lastDay;
};

CommandRow waiveCommand(WaiveOptions* options);

// Writes a file of waivers for the findings of the report that options choose to standard output
// and returns the exit status: kUsageError when there are none.
int waive(const WaiveOptions& options);

}  // namespace pkgvet::cli
