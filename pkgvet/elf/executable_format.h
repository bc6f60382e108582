// The format that executables must have.
#pragma once

class ElfReader;

namespace pkgvet {

// Whether the file is an ELF file of either class in little-endian byte order.
bool hasGoodFormat(const ElfReader& reader);

}  // namespace pkgvet
