// Tells which rule a line of the library belongs to.
#include "cli/catalogue.h"

namespace pkgvet::cli {

Finding identify(const LogLine& line) {
    Finding finding;
    finding.severity = line.severity;
    finding.message = line.text();
    return finding;
}

}  // namespace pkgvet::cli
