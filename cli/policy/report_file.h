// Reports in JSON as they come back to the program.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/base/fault.h"

namespace pkgvet::cli {

// A finding of a report, as far as a waiver needs it.
struct ReportedFinding {
    std::string package;  // its name
    std::string rule;
    std::string severity;
    std::string subject;           // empty for none
    bool counts = false;           // neither waived nor known
    bool standsForOthers = false;  // for findings that the report leaves out
};

// The findings of the report at path, which is one that `--format json` writes, in its order.
// Everything that is wrong with it goes to faults; the result is of use only when nothing was.
std::vector<ReportedFinding> readReport(const std::string& path, std::vector<Fault>* faults);

}  // namespace pkgvet::cli
