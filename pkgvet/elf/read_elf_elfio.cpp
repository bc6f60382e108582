// The facts of an ELF file as ELFIO tells them.
#include <elfio/elfio.hpp>
#include <string>

#include "pkgvet/base/file_ranges.h"
#include "pkgvet/elf/elf_budget.h"
#include "pkgvet/elf/read_elf.h"

namespace pkgvet {

namespace {

bool readDynamicSection(const ELFIO::elfio& elf, ELFIO::section* section, ElfBudget& budget,
                        ElfReaderPrivate& record) {
    const ELFIO::dynamic_section_accessor entries(elf, section);
    for (ELFIO::Elf_Xword i = 0; i < entries.get_entries_num(); ++i) {
        ELFIO::Elf_Xword tag = ELFIO::DT_NULL;
        ELFIO::Elf_Xword value = 0;
        std::string text;
        entries.get_entry(i, tag, value, text);
        if (tag == ELFIO::DT_NULL || !budget.spendEntry(text.size())) {
            return tag == ELFIO::DT_NULL;
        }
        if (tag == ELFIO::DT_NEEDED && !text.empty()) {
            record.libraries.push_back(text);
        }
        if (tag == ELFIO::DT_RPATH && !text.empty()) {
            record.rpath = text;
        }
    }
    return true;
}

bool readSymbolTable(const ELFIO::elfio& elf, ELFIO::section* section, ElfBudget& budget,
                     ElfReaderPrivate& record) {
    const ELFIO::symbol_section_accessor entries(elf, section);
    for (ELFIO::Elf_Xword i = 0; i < entries.get_symbols_num(); ++i) {
        std::string name;
        ELFIO::Elf64_Addr value = 0;
        ELFIO::Elf_Xword size = 0;
        ELFIO::Elf_Half index = 0;
        unsigned char bind = 0, type = 0, other = 0;
        entries.get_symbol(i, name, value, size, bind, type, index, other);
        if (!budget.spendEntry(name.size())) {
            return false;
        }
        record.symbols.push_back(name);
    }
    return true;
}

}  // namespace

ElfReaderPrivate readElf(const std::string& path) {
    // ELFIO waits for whatever it is told to open, so it gets a regular file by its descriptor.
    const FileRanges file(path);
    ELFIO::elfio elf;
    if (!file.isOpen() || !elf.load("/proc/self/fd/" + std::to_string(file.descriptor()))) {
        return {};
    }
    ElfReaderPrivate record;
    record.elfClass = elf.get_class() == ELFIO::ELFCLASS32 ? ElfClass::Elf32 : ElfClass::Elf64;
    record.encoding = elf.get_encoding() == ELFIO::ELFDATA2LSB ? ElfEncoding::LittleEndian
                                                               : ElfEncoding::BigEndian;
    ElfBudget budget(file.size());
    for (ELFIO::Elf_Half i = 0; i < elf.sections.size(); ++i) {
        ELFIO::section* section = elf.sections[i];
        const ELFIO::Elf_Word type = section->get_type();
        const bool isSymbols = type == ELFIO::SHT_SYMTAB || type == ELFIO::SHT_DYNSYM;
        if ((type == ELFIO::SHT_DYNAMIC && !readDynamicSection(elf, section, budget, record)) ||
            (isSymbols && !readSymbolTable(elf, section, budget, record))) {
            return {};
        }
    }
    return record;
}

}  // namespace pkgvet
