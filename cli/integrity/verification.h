// What librpm says of the digests and signatures of a package.
#pragma once

#include <string>

#include "cli/integrity/integrity_findings.h"
#include "cli/integrity/package_header.h"
#include "cli/integrity/rpm_session.h"

namespace pkgvet::cli {

struct Verification {
    std::vector<Finding> findings;
    // Whether a strong digest of the whole payload was right.
    bool isPayloadBound = false;
};

// Has librpm verify the package at path, whose header this is. Digests are always checked. With
// wantsSignature the package has to be signed, and each signature to be one of the session's keys;
// without it, what librpm says of signatures is passed on as a remark.
Verification verifyPackage(const std::string& path, const PackageHeader& header,
                           bool wantsSignature, RpmSession* rpm);

}  // namespace pkgvet::cli
