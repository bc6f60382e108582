// `pkgvet explain`: the catalogue for somebody who has a finding and wants to put it right.
#pragma once

#include <ostream>
#include <string>

#include "cli/catalogue/catalogue.h"
#include "cli/command/options.h"

namespace pkgvet::cli {

// Writes the chosen entries, or all, to standard output and returns the exit status. With an
// unknown id nothing is written there, and standard error names the nearest ones.
int explain(const ExplainOptions& options);

// Writes an entry for a terminal, in lines of at most 80 columns but for those of its example.
void writeEntry(const Entry& entry, bool color, std::ostream& stream);

// The line of an entry as the library writes it, with "..." for what comes out of the package.
// Empty when there is no such line.
std::string messageForm(const Entry& entry);

// Writes the page docs/findings.md.
void writeFindingsPage(std::ostream& stream);

}  // namespace pkgvet::cli
