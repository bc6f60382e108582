// Where ElfReader learns what it knows. The build takes one of two sources for it: one that loads
// sections with ELFIO, and one of our own for systems that do not package ELFIO. Both judge the
// header and read the loaded sections with the same code.
#pragma once

#include <string>
#include <vector>

#include "pkgvet/elf/elf_reader.h"

// The record behind ElfReader; as it stands here, that of a file that could not be loaded.
struct ElfReaderPrivate {
    ElfClass elfClass = ElfClass::NotLoaded;
    ElfEncoding encoding = ElfEncoding::LittleEndian;
    std::vector<std::string> symbols;
    std::vector<std::string> libraries;
    std::string rpath;
};

namespace pkgvet {

// Sections are found by their type alone, never by name, and all of one kind contribute.
ElfReaderPrivate readElf(const std::string& path);

}  // namespace pkgvet
