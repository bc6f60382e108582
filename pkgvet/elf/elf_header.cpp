// Judges the first bytes of a file, in the same way whatever reads the rest of it.
#include "pkgvet/elf/elf_header.h"

#include <elf.h>

#include <algorithm>
#include <string>

namespace pkgvet {

namespace {

std::optional<ElfHeader> readIdentification(const FileRanges& file) {
    const std::optional<std::string> identification = file.read(0, EI_NIDENT);
    if (!identification || !identification->starts_with(ELFMAG)) {
        return std::nullopt;
    }
    ElfHeader header;
    switch ((*identification)[EI_CLASS]) {
        case ELFCLASS32:
            header.elfClass = ElfClass::Elf32;
            header.layout = kElfLayout32;
            break;
        case ELFCLASS64:
            header.elfClass = ElfClass::Elf64;
            header.layout = kElfLayout64;
            break;
        default:
            return std::nullopt;
    }
    header.encoding = (*identification)[EI_DATA] == ELFDATA2LSB ? ElfEncoding::LittleEndian
                                                                : ElfEncoding::BigEndian;
    return header;
}

// Records that are too small to be section headers tell nothing. Of a table that runs over the end
// of the file, the headers in front of the end count.
std::uint64_t countWholeSections(const ElfHeader& header, std::uint64_t stated,
                                 const FileRanges& file) {
    const std::uint64_t size = header.layout.sectionHeader;
    if (header.tableStride < size || !file.holds(header.tableOffset, size)) {
        return 0;
    }
    const std::uint64_t room = file.size() - header.tableOffset - size;
    return std::min(stated, room / header.tableStride + 1);
}

}  // namespace

std::optional<ElfHeader> readElfHeader(const FileRanges& file) {
    std::optional<ElfHeader> header = readIdentification(file);
    if (!header) {
        return std::nullopt;
    }
    const ElfLayout& layout = header->layout;
    const std::optional<std::string> bytes = file.read(0, layout.header);
    if (!bytes) {
        return std::nullopt;
    }
    // The bytes are a whole header, so each of its numbers is there.
    const ByteView fields(*bytes, header->order());
    header->tableOffset = fields.number(layout.tableOffset, layout.word).value();
    header->tableStride = fields.number(layout.tableStride, kElfHalf).value();
    const std::uint64_t stated = fields.number(layout.tableCount, kElfHalf).value();
    header->sectionCount = countWholeSections(*header, stated, file);
    return header;
}

}  // namespace pkgvet
