// What counts as a program that the platform can run.
#include "pkgvet/elf/executable_format.h"

#include "pkgvet/elf/read_elf.h"

namespace pkgvet {

bool hasGoodFormat(const std::string& path, ElfAllowance* allowance) {
    const ElfReaderPrivate elf = readElf(path, ignoreSymbol, allowance);
    // Both classes are named, as the byte order of a file that was not loaded means nothing.
    const bool isLoaded = elf.elfClass == ElfClass::Elf32 || elf.elfClass == ElfClass::Elf64;
    return isLoaded && elf.encoding == ElfEncoding::LittleEndian;
}

bool hasGoodFormat(const std::string& path) {
    ElfAllowance allowance;
    return hasGoodFormat(path, &allowance);
}

}  // namespace pkgvet
