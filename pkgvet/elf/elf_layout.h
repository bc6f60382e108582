// Where the fields stand in the records of an ELF class.
#pragma once

#include <elf.h>

#include <cstddef>
#include <cstdint>

namespace pkgvet {

// Offsets and sizes in bytes. Address, offset and section size are one word wide, as are tag and
// value of a dynamic entry; the counts and strides of the header are halves.
struct ElfLayout {
    unsigned word;

    std::uint64_t header;
    std::uint64_t tableOffset;
    std::uint64_t tableStride;
    std::uint64_t tableCount;
    std::uint64_t segmentCount;
    std::uint64_t sectionNames;

    std::uint64_t sectionHeader;
    std::uint64_t sectionOffset;
    std::uint64_t sectionSize;
    std::uint64_t sectionLink;
    std::uint64_t sectionEntrySize;
};

inline constexpr ElfLayout kElfLayout32 = {
    .word = sizeof(Elf32_Word),
    .header = sizeof(Elf32_Ehdr),
    .tableOffset = offsetof(Elf32_Ehdr, e_shoff),
    .tableStride = offsetof(Elf32_Ehdr, e_shentsize),
    .tableCount = offsetof(Elf32_Ehdr, e_shnum),
    .segmentCount = offsetof(Elf32_Ehdr, e_phnum),
    .sectionNames = offsetof(Elf32_Ehdr, e_shstrndx),
    .sectionHeader = sizeof(Elf32_Shdr),
    .sectionOffset = offsetof(Elf32_Shdr, sh_offset),
    .sectionSize = offsetof(Elf32_Shdr, sh_size),
    .sectionLink = offsetof(Elf32_Shdr, sh_link),
    .sectionEntrySize = offsetof(Elf32_Shdr, sh_entsize),
};

inline constexpr ElfLayout kElfLayout64 = {
    .word = sizeof(Elf64_Xword),
    .header = sizeof(Elf64_Ehdr),
    .tableOffset = offsetof(Elf64_Ehdr, e_shoff),
    .tableStride = offsetof(Elf64_Ehdr, e_shentsize),
    .tableCount = offsetof(Elf64_Ehdr, e_shnum),
    .segmentCount = offsetof(Elf64_Ehdr, e_phnum),
    .sectionNames = offsetof(Elf64_Ehdr, e_shstrndx),
    .sectionHeader = sizeof(Elf64_Shdr),
    .sectionOffset = offsetof(Elf64_Shdr, sh_offset),
    .sectionSize = offsetof(Elf64_Shdr, sh_size),
    .sectionLink = offsetof(Elf64_Shdr, sh_link),
    .sectionEntrySize = offsetof(Elf64_Shdr, sh_entsize),
};

// What stands at the same place in both classes. The name is a word of the 32-bit kind.
inline constexpr std::uint64_t kElfSectionType = offsetof(Elf64_Shdr, sh_type);
inline constexpr std::uint64_t kElfSymbolName = offsetof(Elf64_Sym, st_name);
static_assert(kElfSectionType == offsetof(Elf32_Shdr, sh_type));
static_assert(kElfSymbolName == offsetof(Elf32_Sym, st_name));

inline constexpr unsigned kElfHalf = sizeof(Elf64_Half);
inline constexpr unsigned kElfWord = sizeof(Elf64_Word);

}  // namespace pkgvet
