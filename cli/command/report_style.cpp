// Looks at the terminal and the environment.
#include "cli/command/report_style.h"

#include <stdlib.h>

#include "cli/base/terminal.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kStepSummary = "GITHUB_STEP_SUMMARY";

}  // namespace

ReportStyle styleOf(const ReportOptions& options, bool showWaived, std::optional<Severity> failOn) {
    ReportStyle style;
    style.color = wantsColor(options.color);
    style.columns = outputColumns();
    style.quiet = options.quiet;
    style.showWaived = showWaived;
    style.explain = options.explain;
    style.timings = options.timings;
    style.split = options.split;
    if (const char* summary = getenv(kStepSummary)) {
        style.stepSummary = summary;
    }
    style.failOn = failOn.value_or(style.failOn);
    return style;
}

}  // namespace pkgvet::cli
