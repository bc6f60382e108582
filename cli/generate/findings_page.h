// The catalogue as a page of the documentation.
#pragma once

#include <ostream>
#include <string>

#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

// The line of an entry as the library writes it, with "..." for what comes out of the package.
// Empty when there is no such line.
std::string messageForm(const Entry& entry);

// Writes the page docs/findings.md.
void writeFindingsPage(std::ostream& stream);

}  // namespace pkgvet::cli
