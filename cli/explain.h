// `pkgvet explain`: the catalogue for somebody who has a finding and wants to put it right.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "cli/catalogue.h"

namespace pkgvet::cli {

// The line of an entry as the library writes it, with "..." for what comes out of the package.
// Empty when there is no such line.
std::string messageForm(const Entry& entry);

// Writes an entry for a terminal, in lines of at most 80 columns but for the lines of its example.
void writeEntry(const Entry& entry, std::ostream& stream);

// Writes the page docs/findings.md.
void writeFindingsPage(std::ostream& stream);

// Writes the entries with these ids, or all, to standard output. Returns the exit status: with an
// unknown id nothing is written there, and standard error names the nearest ones.
int explain(const std::vector<std::string>& ids);

}  // namespace pkgvet::cli
