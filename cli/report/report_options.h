// What the user decides about how a run is reported.
#pragma once

#include <vector>

#include "cli/base/option.h"
#include "cli/base/terminal.h"
#include "cli/report/formats.h"

namespace pkgvet::cli {

struct ReportOptions {
    Format format = Format::Text;  // on standard output
    std::vector<Output> outputs;
    ColorMode color = ColorMode::Auto;
    bool quiet = false;
    bool explain = false;
    bool timings = false;
};

std::vector<Option> reportOptions(ReportOptions* options);

}  // namespace pkgvet::cli
