// The verdict on a package as text for a person.
#pragma once

#include <ostream>

#include "cli/model/model.h"
#include "cli/report/formats.h"

namespace pkgvet::cli {

// "PATH: rejected (2 errors, 1 warning)"; with several profiles a line for those that accept the
// package and one for those that reject it.
void writeTextVerdict(const PackageReport& package, const ReportStyle& style, std::ostream& stream);

}  // namespace pkgvet::cli
