// What counts as a program that the platform can run.
#include "pkgvet/elf/executable_format.h"

#include "pkgvet/elf/elf_reader.h"

namespace pkgvet {

bool hasGoodFormat(const ElfReader& reader) {
    // Both classes are named, as the byte order of a file that was not loaded means nothing.
    const bool isLoaded =
        reader.elfClass() == ElfClass::Elf32 || reader.elfClass() == ElfClass::Elf64;
    return isLoaded && reader.encoding() == ElfEncoding::LittleEndian;
}

}  // namespace pkgvet
