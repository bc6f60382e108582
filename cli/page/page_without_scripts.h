// The page where no scripts run.
#pragma once

#include <ostream>

#include "cli/model/model.h"

namespace pkgvet::cli {

// Totals, rules, what was not judged, and every package with its findings. A finding is a subject
// below the message that it shares with others.
void writeWithoutScripts(const RunReport& run, std::ostream& stream);

}  // namespace pkgvet::cli
