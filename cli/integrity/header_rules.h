// The rules on what rpm would do by the header.
#pragma once

#include "cli/integrity/header_files.h"
#include "cli/integrity/integrity_findings.h"
#include "cli/integrity/package_header.h"

namespace pkgvet::cli {

// Paths that are not absolute or not normal.
void checkPaths(const HeaderFiles& files, IntegrityFindings* findings);

}  // namespace pkgvet::cli
