// The program's own rules on one package.
#pragma once

#include <sys/stat.h>

#include <future>
#include <optional>
#include <string>
#include <vector>

#include "cli/integrity/early_contents.h"
#include "cli/integrity/header_files.h"
#include "cli/integrity/package_header.h"
#include "cli/integrity/place_rules.h"
#include "cli/integrity/rpm_session.h"
#include "cli/integrity/tree_rules.h"
#include "cli/integrity/verification.h"
#include "cli/model/model.h"

namespace pkgvet::cli {

// Finds out whether what the library judges is what rpm would install. The library looks at the
// header in one place and at the unpacked payload in another; these rules hold the two against each
// other, and look at what the header would do beyond the files that it lists.
//
// One object looks at one package, and its calls come in the order in which they stand here. What
// takes long runs beside whatever the caller does in between: first librpm, and the reading of what
// is unpacked by then; later only reading.
class IntegrityCheck {
public:
    // header, which outlives the check, is that of the package at path, whose payload will be
    // unpacked below root. The package is read until awaitVerification, and nobody else uses the
    // header or the session as long.
    IntegrityCheck(const PackageHeader& header, const std::string& path, const std::string& root,
                   bool wantsSignature, RpmSession* rpm);
    IntegrityCheck(const IntegrityCheck&) = delete;
    IntegrityCheck(IntegrityCheck&&) = delete;
    IntegrityCheck& operator=(const IntegrityCheck&) = delete;
    IntegrityCheck& operator=(IntegrityCheck&&) = delete;
    ~IntegrityCheck();

    // The payload is unpacked.
    void awaitVerification();
    // What is known by then: whether the text of the file that status describes holds the home
    // directory of the platform's default user.
    std::optional<bool> holdsHardcodedPath(const struct stat& status) const {
        return early_.holdsHardcodedPath(status);
    }
    // Nothing below root changes any more. Without this call the rules on the payload do not run.
    void compareTree();
    // What went wrong in comparing is thrown here, or by findings().
    void awaitComparison();

    // All findings but those that depend on the profile.
    std::vector<Finding> findings();
    std::vector<Finding> findingsOnPlaces(const PlaceRules& rules) const;

private:
    const PackageHeader& header_;
    const std::string root_;
    HeaderFiles files_;
    EarlyContents early_;
    std::future<Verification> pendingVerification_;
    Verification verification_;
    std::optional<TreeComparison> comparison_;
    std::future<void> pendingComparison_;
};

}  // namespace pkgvet::cli
