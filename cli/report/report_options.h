// What the user decides about how a run is reported.
#pragma once

#include <initializer_list>
#include <optional>
#include <vector>

#include "cli/base/option.h"
#include "cli/base/terminal.h"
#include "cli/report/formats.h"

namespace pkgvet::cli {

struct ReportOptions {
    std::optional<Format> format;  // on standard output, if the user says so
    std::vector<Output> outputs;
    ColorMode color = ColorMode::Auto;
    bool quiet = false;
    bool explain = false;
    bool timings = false;
    bool split = false;
};

std::vector<Option> reportOptions(ReportOptions* options);

// The outputs that go to files. One to "-" is the report on standard output instead.
std::vector<Output> filesOf(const ReportOptions& options);

// The formats that options ask for on standard output: text unless they say something else. More
// than one contradict each other.
std::vector<Format> formatsOfStandardOutput(const ReportOptions& options);

// Whether a report of the run, on standard output or in a file, is in one of formats.
bool hasReportIn(const ReportOptions& options, std::initializer_list<Format> formats);

}  // namespace pkgvet::cli
