// The rule on the symbols of the main binary.
#include <string>
#include <string_view>

#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_messages.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/elf/elf_reader.h"
#include "pkgvet/report/findings.h"

namespace pkgvet {

namespace {

constexpr std::string_view kStartOfC = "__libc_start_main";
constexpr std::string_view kMain = "main";

// A name counts wherever it stands, be it defined, undefined, local or hidden. Any other name, the
// empty one of a table's first entry included, tells of a program that is not known to need the
// launcher, unless its package imports the toolkit.
void noteSymbols(const ElfReader& reader, bool importsToolkit, BinaryFacts* facts) {
    for (const std::string& symbol : reader.symbols()) {
        if (symbol == kStartOfC) {
            facts->mainSymbol = true;
        } else if (symbol == kMain) {
            facts->mainExport = true;
        } else if (!importsToolkit) {
            facts->booster = true;
        }
    }
}

}  // namespace

// The launcher, called booster, loads the program and calls its main. Where it is not sure to be
// used, a main that is not exported is worth a warning only.
void processElfTabs(const std::string& binary, bool isInstalled, bool importsToolkit,
                    BinaryFacts* facts, Findings* findings) {
    noteSymbols(ElfReader(binary.c_str()), importsToolkit, facts);
    if (!isInstalled) {
        return;
    }
    if (!facts->mainSymbol) {
        findings->violation(kMainNotLinked);
    }
    if (facts->mainExport) {
        return;
    }
    if (facts->booster) {
        findings->warning(kMainNotExported);
    } else {
        findings->violation(kMainMustBeExported);
    }
}

}  // namespace pkgvet
