// What the sections of an ELF file tell, whoever loads them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "pkgvet/elf/elf_header.h"
#include "pkgvet/elf/read_elf.h"

namespace pkgvet {

// As its header states it, true or not.
struct ElfSection {
    std::uint64_t type = 0;
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    std::uint64_t link = 0;
    std::uint64_t entrySize = 0;
};

// Where sections come from.
struct ElfSectionSource {
    // Loads the first size bytes, which lie inside the file, of the section at index. They must
    // stay where they are until all sections have been read. Nothing when they cannot be loaded.
    std::function<std::optional<std::string_view>(std::size_t index, std::uint64_t size)> load;
    // The size bytes at offset of the section, which lie inside the file as well.
    std::function<std::optional<std::string>(std::size_t index, std::uint64_t offset,
                                             std::uint64_t size)>
        copy;
};

// The facts of a file with this header, this size and these sections, without its symbols. Sections
// are loaded when they are needed, each of them once, and the entries of symbol tables piece by
// piece. The record is that of a file that could not be loaded when the source gives nothing or
// when the file costs more than the allowance permits, which is charged in any case.
ElfReaderPrivate readElfSections(const ElfHeader& header, std::uint64_t fileSize,
                                 const std::vector<ElfSection>& sections,
                                 const ElfSectionSource& source, const SymbolVisitor& visit,
                                 ElfAllowance* allowance);

}  // namespace pkgvet
