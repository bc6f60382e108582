// A run as reports hold it beside its packages.
#pragma once

#include "cli/model/model.h"
#include "cli/records/fields.h"

namespace pkgvet::cli {

// What the head of a report in JSON, or the last line of one in JSON Lines, says.
struct RunRecord {
    RunReport run;       // without packages
    PackageTally tally;  // of the packages that the report should hold
};

// Throws FieldFault.
RunRecord readRun(const Fields& fields);

}  // namespace pkgvet::cli
