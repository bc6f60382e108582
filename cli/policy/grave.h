// The findings that no choice can excuse.
#pragma once

#include "cli/catalogue/catalogue.h"
#include "cli/model/model.h"

namespace pkgvet::cli {

// Whether a finding rejects a package whatever is chosen, validation being off included: scripts,
// and setuid, setgid and sticky bits.
inline bool isGrave(const Finding& finding) {
    return finding.severity == Severity::Critical || isGrave(finding.rule);
}

}  // namespace pkgvet::cli
