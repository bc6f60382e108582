// What the guard in the place of cpio found, as a finding.
#pragma once

#include "cli/guard/guard_note.h"
#include "cli/model/model.h"

namespace pkgvet::cli {

// note is one of an irregular archive.
Finding irregularityFinding(const GuardNote& note);

}  // namespace pkgvet::cli
