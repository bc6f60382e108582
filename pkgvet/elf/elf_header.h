// The identification and the header that an ELF file begins with.
#pragma once

#include <cstdint>
#include <optional>

#include "pkgvet/base/file_ranges.h"
#include "pkgvet/elf/byte_view.h"
#include "pkgvet/elf/elf_layout.h"
#include "pkgvet/elf/elf_reader.h"

namespace pkgvet {

struct ElfHeader {
    ElfClass elfClass = ElfClass::NotLoaded;
    ElfEncoding encoding = ElfEncoding::BigEndian;
    ElfLayout layout = kElfLayout64;

    // The table of section headers: one every tableStride bytes, as many as lie whole inside the
    // file.
    std::uint64_t tableOffset = 0;
    std::uint64_t tableStride = 0;
    std::uint64_t sectionCount = 0;

    ByteOrder order() const {
        return encoding == ElfEncoding::LittleEndian ? ByteOrder::Little : ByteOrder::Big;
    }
};

// This decides whether a file can be loaded. Nothing for a file without the identification of an
// ELF file, of a class that is neither 32 nor 64 bit, or without the whole header of its class. All
// else in the header may be wrong.
std::optional<ElfHeader> readElfHeader(const FileRanges& file);

}  // namespace pkgvet
