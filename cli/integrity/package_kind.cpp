// The rules on what kind of package a header stands for.
#include <rpm/rpmtag.h>

#include <string>

#include "cli/catalogue/integrity_messages.h"
#include "cli/integrity/header_rules.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kSystem = "linux";
constexpr const char* kPayloadFormat = "cpio";
// What librpm puts in the place of a source package that is not named.
constexpr const char* kNone = "(none)";

}  // namespace

// Versions of rpm differ in how they tell a source package that does not say that it is one. None
// takes a package for one that names the package of its sources.
bool isSourcePackage(const PackageHeader& header) {
    return header.has(RPMTAG_SOURCEPACKAGE) || !header.has(RPMTAG_SOURCERPM) ||
           header.text(RPMTAG_SOURCERPM) == kNone;
}

void checkKind(const PackageHeader& header, IntegrityFindings* findings) {
    if (isSourcePackage(header)) {
        findings->add(kSourcePackage);
    }
    const std::string system = header.text(RPMTAG_OS);
    if (system != kSystem) {
        findings->add(kOtherSystem, {system});
    }
    const std::string format = header.text(RPMTAG_PAYLOADFORMAT);
    if (header.has(RPMTAG_PAYLOADFORMAT) && format != kPayloadFormat) {
        findings->add(kPayloadFormatUnknown, {format});
    }
}

}  // namespace pkgvet::cli
