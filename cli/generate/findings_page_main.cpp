// Prints docs/findings.md. Not installed.
#include <iostream>

#include "cli/generate/findings_page.h"

int main() {
    pkgvet::cli::writeFindingsPage(std::cout);
    return std::cout.flush() ? 0 : 1;
}
