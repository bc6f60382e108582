// The handle over the facts of an ELF file.
#include "pkgvet/elf/elf_reader.h"

#include <utility>

#include "pkgvet/elf/read_elf.h"

// The list never takes twice its size while it grows.
ElfReaderPrivate pkgvet::readElfWithSymbols(const std::string& path) {
    std::vector<std::string> symbols;
    const auto keep = [&symbols](const SymbolVisit& symbol) {
        symbols.reserve(symbol.count);
        symbols.insert(symbols.end(), symbol.repeats, std::string(symbol.name));
    };
    ElfReaderPrivate record = readElf(path, keep);
    if (record.elfClass != ElfClass::NotLoaded) {
        record.symbols = std::move(symbols);
    }
    return record;
}

ElfReader::ElfReader(const char* path)
    : d_ptr(std::make_unique<ElfReaderPrivate>(pkgvet::readElfWithSymbols(path))) {}

ElfReader::ElfReader(const ElfReader& other)
    : d_ptr(std::make_unique<ElfReaderPrivate>(*other.d_ptr)) {}

ElfReader& ElfReader::operator=(ElfReader&& other) noexcept {
    d_ptr.swap(other.d_ptr);
    return *this;
}

ElfReader::~ElfReader() = default;

ElfClass ElfReader::elfClass() const {
    return d_ptr->elfClass;
}

ElfEncoding ElfReader::encoding() const {
    return d_ptr->encoding;
}

const std::vector<std::string>& ElfReader::symbols() const {
    return d_ptr->symbols;
}

const std::vector<std::string>& ElfReader::libraries() const {
    return d_ptr->libraries;
}

const std::string& ElfReader::rpath() const {
    return d_ptr->rpath;
}
