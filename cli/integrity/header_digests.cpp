// The rule on what binds the files to the header.
#include <rpm/rpmpgp.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>

#include "cli/catalogue/integrity_messages.h"
#include "cli/integrity/header_rules.h"

namespace pkgvet::cli {

namespace {

// For which no two texts with one digest can be made.
constexpr int kStrongAlgorithms[] = {PGPHASHALGO_SHA256, PGPHASHALGO_SHA384, PGPHASHALGO_SHA512};

bool isStrong(int algorithm) {
    return std::find(std::begin(kStrongAlgorithms), std::end(kStrongAlgorithms), algorithm) !=
           std::end(kStrongAlgorithms);
}

bool hasDigest(const HeaderFile& file) {
    return !file.digest.empty();
}

// What is installed as a file of its own.
bool needsDigest(const HeaderFile& file) {
    return S_ISREG(file.mode) && !file.isGhost();
}

}  // namespace

void checkFileDigests(const HeaderFiles& list, bool isPayloadBound, IntegrityFindings* findings) {
    for (const HeaderFile& file : list.files) {
        if (needsDigest(file) && !hasDigest(file)) {
            findings->add(kFileDigestMissing, {file.path});
        }
    }
    if (!isPayloadBound && !isStrong(list.digestAlgorithm) &&
        std::any_of(list.files.begin(), list.files.end(), hasDigest)) {
        const char* const name =
            pgpValString(PGPVAL_HASHALGO, static_cast<std::uint8_t>(list.digestAlgorithm));
        findings->add(kFileDigestsWeak, {name});
    }
}

}  // namespace pkgvet::cli
