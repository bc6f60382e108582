// Our own source of the sections of an ELF file. It is called after the build option that takes it;
// sections are copied and not mapped, see FileRanges.
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pkgvet/base/file_ranges.h"
#include "pkgvet/elf/byte_view.h"
#include "pkgvet/elf/elf_header.h"
#include "pkgvet/elf/elf_layout.h"
#include "pkgvet/elf/elf_sections.h"
#include "pkgvet/elf/read_elf.h"

namespace pkgvet {

namespace {

// fields are a whole section header, so each of its numbers is there.
ElfSection toSection(const ByteView& fields, const ElfLayout& layout) {
    return {fields.number(kElfSectionType, kElfWord).value(),
            fields.number(layout.sectionOffset, layout.word).value(),
            fields.number(layout.sectionSize, layout.word).value(),
            fields.number(layout.sectionLink, kElfWord).value(),
            fields.number(layout.sectionEntrySize, layout.word).value()};
}

// Nothing when the file has shrunk or cannot be read.
std::optional<std::vector<ElfSection>> readSectionTable(const FileRanges& file,
                                                        const ElfHeader& header) {
    std::vector<ElfSection> sections;
    for (std::uint64_t i = 0; i < header.sectionCount; ++i) {
        const std::uint64_t offset = header.tableOffset + i * header.tableStride;
        const std::optional<std::string> bytes = file.read(offset, header.layout.sectionHeader);
        if (!bytes) {
            return std::nullopt;
        }
        sections.push_back(toSection(ByteView(*bytes, header.order()), header.layout));
    }
    return sections;
}

}  // namespace

ElfReaderPrivate readElf(const std::string& path, const SymbolVisitor& visit,
                         ElfAllowance* allowance) {
    const FileRanges file(path);
    const std::optional<ElfHeader> header = readElfHeader(file);
    const auto sections = header ? readSectionTable(file, *header) : std::nullopt;
    if (!sections) {
        return {};
    }
    std::deque<std::string> loaded;  // never moves what it holds
    ElfSectionSource source;
    source.copy = [&](std::size_t index, std::uint64_t offset, std::uint64_t size) {
        return file.read((*sections)[index].offset + offset, size);
    };
    source.load = [&](std::size_t index, std::uint64_t size) -> std::optional<std::string_view> {
        std::optional<std::string> bytes = file.read((*sections)[index].offset, size);
        return bytes ? std::optional<std::string_view>(loaded.emplace_back(std::move(*bytes)))
                     : std::nullopt;
    };
    return readElfSections(*header, file.size(), *sections, source, visit, allowance);
}

}  // namespace pkgvet
