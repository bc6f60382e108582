// The rule on the symbols of the main binary.
#include <string>
#include <string_view>

#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_messages.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/elf/read_elf.h"
#include "pkgvet/report/findings.h"

namespace pkgvet {

namespace {

constexpr std::string_view kStartOfC = "__libc_start_main";
constexpr std::string_view kMain = "main";

// A name counts wherever it stands, be it defined, undefined, local or hidden. Any other name, the
// empty one of a table's first entry included, tells of a program that is not known to need the
// launcher, unless its package imports the toolkit.
void noteSymbols(const std::string& binary, bool importsToolkit, BinaryFacts* facts) {
    BinaryFacts noted = *facts;
    const auto note = [&noted, importsToolkit](const SymbolVisit& symbol) {
        if (symbol.name == kStartOfC) {
            noted.mainSymbol = true;
        } else if (symbol.name == kMain) {
            noted.mainExport = true;
        } else if (!importsToolkit) {
            noted.booster = true;
        }
    };
    if (readElf(binary, note).elfClass != ElfClass::NotLoaded) {
        *facts = noted;
    }
}

}  // namespace

// The launcher, called booster, loads the program and calls its main. Where it is not sure to be
// used, a main that is not exported is worth a warning only.
void processElfTabs(const std::string& binary, bool isInstalled, bool importsToolkit,
                    BinaryFacts* facts, Findings* findings) {
    noteSymbols(binary, importsToolkit, facts);
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
