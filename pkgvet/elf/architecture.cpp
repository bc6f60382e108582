// The rule on the architecture of packages without machine code.
#include <string>

#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_messages.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/report/findings.h"

namespace pkgvet {

// The architecture of a package whose header could not be read is empty, and counts as one.
void checkArch(const std::string& arch, bool isQmlOnly, const BinaryFacts& facts,
               Findings* findings) {
    if (arch != kNoArch && isQmlOnly && !facts.archSpecificContent) {
        findings->warning(kQmlOnlyShouldBeNoarch);
    }
}

}  // namespace pkgvet
