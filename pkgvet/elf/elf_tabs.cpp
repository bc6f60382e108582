// The rule on the symbols of the main binary.
#include <string>
#include <string_view>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/elf/elf_messages.h"
#include "pkgvet/elf/elf_reader.h"
#include "pkgvet/report/logger.h"

namespace {

constexpr std::string_view kStartOfC = "__libc_start_main";
constexpr std::string_view kMain = "main";

}  // namespace

// The launcher, called booster, loads the program and calls its main. A name counts wherever it
// stands, be it defined, undefined, local or hidden. Any other name, the empty one of a table's
// first entry included, tells of a program that is not known to need the launcher, unless its
// package imports the toolkit.
void ContentValidator::processElfTabs(const std::string& path) {
    const ElfReader reader(path.c_str());
    for (const std::string& symbol : reader.symbols()) {
        if (symbol == kStartOfC) {
            d_ptr->binaryFacts.mainSymbol = true;
        } else if (symbol == kMain) {
            d_ptr->binaryFacts.mainExport = true;
        } else if (!d_ptr->qmlFacts.ostrandImport) {
            d_ptr->binaryFacts.booster = true;
        }
    }
    if (!d_ptr->fileFacts.unwantedBinExists) {
        return;
    }
    if (!d_ptr->binaryFacts.mainSymbol) {
        d_ptr->failures |= pkgvet::kViolation;
        Logger::log(LogLevel::Error, {pkgvet::kMainNotLinked});
    }
    if (d_ptr->binaryFacts.mainExport) {
        return;
    }
    if (d_ptr->binaryFacts.booster) {
        Logger::log(LogLevel::Warning, {pkgvet::kMainNotExported});
    } else {
        d_ptr->failures |= pkgvet::kViolation;
        Logger::log(LogLevel::Error, {pkgvet::kMainMustBeExported});
    }
}
