// What counts as a program that the platform can run.
#pragma once

class ElfReader;

namespace pkgvet {

// Whether the file was loaded and is in little-endian byte order. Its class, 32 or 64 bit, and its
// machine make no difference.
bool hasGoodFormat(const ElfReader& reader);

}  // namespace pkgvet
