// The program's own rules on one package.
#pragma once

#include <rpm/rpmts.h>

#include <string>
#include <vector>

#include "cli/integrity/header_files.h"
#include "cli/integrity/integrity_findings.h"
#include "cli/integrity/integrity_options.h"
#include "cli/integrity/package_header.h"
#include "cli/model/model.h"

namespace pkgvet::cli {

// Finds out whether what the library judges is what rpm would install. The library looks at the
// header in one place and at the unpacked payload in another; these rules hold the two against each
// other, and look at what the header would do beyond the files that it lists.
//
// One object looks at one package.
class IntegrityCheck {
public:
    // The package is at path, as a whole and for as long as this constructor runs.
    IntegrityCheck(const IntegrityOptions& options, const std::string& path, rpmts transactions);

    // The rules on the header.
    void checkHeader();

    // What the rules found since the last call, which is handed over.
    std::vector<Finding> take() { return findings_.take(); }

private:
    PackageHeader header_;
    HeaderFiles files_;
    IntegrityFindings findings_;
};

}  // namespace pkgvet::cli
