// Tells the format of executables.
#include "pkgvet/elf/executable_format.h"

#include "pkgvet/elf/elf_reader.h"

namespace pkgvet {

bool hasGoodFormat(const ElfReader& reader) {
    const bool isLoaded =
        reader.elfClass() == ElfClass::Elf32 || reader.elfClass() == ElfClass::Elf64;
    return isLoaded && reader.encoding() == ElfEncoding::LittleEndian;
}

}  // namespace pkgvet
