// Where ElfReader learns what it knows. The build takes one of two sources for it: one that loads
// sections with ELFIO, and one of our own for systems that do not package ELFIO. Both judge the
// header and read the loaded sections with the same code.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "pkgvet/elf/elf_budget.h"
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

// Symbols in the order of the file.
struct SymbolVisit {
    std::string_view name;
    // How many follow one another that have it. More than one only for the empty name, which a
    // table of a few bytes can state millions of times.
    std::size_t repeats;
    std::size_t count;  // of all symbols
};
using SymbolVisitor = std::function<void(const SymbolVisit& symbol)>;

// For those who do not ask for symbols.
inline void ignoreSymbol(const SymbolVisit& /*symbol*/) {}

// Sections are found by their type alone, never by name, and all of one kind contribute. The record
// has no symbols: a million names take far more memory than all else, and a visitor can do without.
// What it was told does not count when the record is that of a file that could not be loaded.
ElfReaderPrivate readElf(const std::string& path, const SymbolVisitor& visit,
                         ElfAllowance* allowance);

// The same for a file by itself.
inline ElfReaderPrivate readElf(const std::string& path, const SymbolVisitor& visit) {
    ElfAllowance allowance;
    return readElf(path, visit, &allowance);
}

// The same, with the symbols in the record.
ElfReaderPrivate readElfWithSymbols(const std::string& path);

}  // namespace pkgvet
