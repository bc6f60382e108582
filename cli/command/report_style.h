// How reports are written here.
#pragma once

#include <optional>

#include "cli/report/report_options.h"

namespace pkgvet::cli {

// What the options come to in the surroundings of this process: its terminal and environment.
ReportStyle styleOf(const ReportOptions& options, bool showWaived, std::optional<Severity> failOn);

}  // namespace pkgvet::cli
