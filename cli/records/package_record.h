// A package as reports hold it.
#pragma once

#include "cli/model/model.h"
#include "cli/records/fields.h"

namespace pkgvet::cli {

// The package that fields describe, as it was when it was written. Throws FieldFault, also where
// one member does not follow from the others as it does in every report.
PackageReport readPackage(const Fields& fields);

}  // namespace pkgvet::cli
