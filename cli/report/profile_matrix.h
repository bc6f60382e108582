// Rules against profiles.
#pragma once

#include <ostream>

#include "cli/model/model.h"

namespace pkgvet::cli {

// Writes a table with a row for each rule that the package breaks and a column for each profile:
// how many findings count under it, "." for none. Nothing for a package that breaks no rule.
void writeProfileMatrix(const PackageReport& package, bool color, std::ostream& stream);

}  // namespace pkgvet::cli
