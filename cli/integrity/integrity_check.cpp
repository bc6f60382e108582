// Calls the program's own rules.
#include "cli/integrity/integrity_check.h"

#include <iterator>
#include <utility>

#include "cli/integrity/header_rules.h"
#include "cli/integrity/tree_walk.h"

namespace pkgvet::cli {

namespace {

// Where no thread can be had, the work is done when its result is asked for.
constexpr std::launch kBeside = std::launch::async | std::launch::deferred;

void append(std::vector<Finding> more, std::vector<Finding>* findings) {
    std::move(more.begin(), more.end(), std::back_inserter(*findings));
}

}  // namespace

IntegrityCheck::IntegrityCheck(const PackageHeader& header, const std::string& path,
                               const std::string& root, bool wantsSignature, RpmSession* rpm)
    : header_(header),
      root_(root),
      pendingVerification_(std::async(kBeside, [this, path, wantsSignature, rpm] {
          files_ = readFiles(header_);
          Verification verification = verifyPackage(path, header_, wantsSignature, rpm);
          early_.read(files_, root_);
          return verification;
      })) {}

// The reader would otherwise wait for files that no longer come, and the future for the reader.
IntegrityCheck::~IntegrityCheck() {
    early_.stop();
}

void IntegrityCheck::awaitVerification() {
    early_.stop();
    verification_ = pendingVerification_.get();
}

// Where modes have to be lent, nobody else may look meanwhile.
void IntegrityCheck::compareTree() {
    comparison_.emplace(files_, root_, early_);
    const bool isBeside = mayReadAll();
    if (!isBeside) {
        comparison_->compareEntries();
    }
    pendingComparison_ = std::async(kBeside, [this, isBeside] {
        if (isBeside) {
            comparison_->compareEntries();
        }
        comparison_->compareContents();
    });
}

void IntegrityCheck::awaitComparison() {
    if (pendingComparison_.valid()) {
        pendingComparison_.get();
    }
}

std::vector<Finding> IntegrityCheck::findings() {
    awaitComparison();
    IntegrityFindings ofHeader;
    checkKind(header_, &ofHeader);
    if (isSourcePackage(header_)) {
        // Whoever handed in the wrong file need not read what else tells it from the right one.
        return ofHeader.take();
    }
    checkTags(header_, &ofHeader);
    checkProvides(header_, &ofHeader);
    checkLists(header_, &ofHeader);
    checkPaths(files_, &ofHeader);
    checkPathParts(header_, &ofHeader);
    checkPathsAmongThemselves(files_, &ofHeader);
    checkKinds(files_, &ofHeader);
    checkModes(files_, comparison_ ? comparison_->modes() : std::vector<mode_t>(), &ofHeader);
    checkCapabilities(header_, files_, &ofHeader);
    checkFileDigests(files_, verification_.isPayloadBound, &ofHeader);
    std::vector<Finding> all = std::move(verification_.findings);
    append(ofHeader.take(), &all);
    if (comparison_) {
        append(comparison_->take(), &all);
    }
    return all;
}

std::vector<Finding> IntegrityCheck::findingsOnPlaces(const PlaceRules& rules) const {
    IntegrityFindings findings;
    checkPlaces(files_, rules, &findings);
    return findings.take();
}

}  // namespace pkgvet::cli
