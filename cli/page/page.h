// A page that shows a run to a person.
#pragma once

#include <ostream>

#include "cli/model/model.h"

namespace pkgvet::cli {

// One HTML file that needs nothing else: styles and scripts stand in it, and a content security
// policy lets nothing else run and nothing be fetched. What comes out of packages reaches it as
// data and escaped text. It shows totals, verdicts and findings without scripts too.
void writePage(const RunReport& run, bool showTimings, std::ostream& stream);

}  // namespace pkgvet::cli
