// Calls the program's own rules.
#include "cli/integrity/integrity_check.h"

#include "cli/integrity/header_rules.h"

namespace pkgvet::cli {

IntegrityCheck::IntegrityCheck(const IntegrityOptions& /*options*/, const std::string& path,
                               rpmts transactions)
    : header_(path, transactions), files_(readFiles(header_)) {}

void IntegrityCheck::checkHeader() {
    checkPaths(files_, &findings_);
}

}  // namespace pkgvet::cli
