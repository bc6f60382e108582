// The facts of an ELF file, read out of its tables with every offset checked.
#include <elf.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pkgvet/base/file_ranges.h"
#include "pkgvet/elf/byte_view.h"
#include "pkgvet/elf/elf_budget.h"
#include "pkgvet/elf/elf_layout.h"
#include "pkgvet/elf/read_elf.h"

namespace pkgvet {

namespace {

struct Section {
    std::uint64_t type = SHT_NULL;
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    std::uint64_t link = 0;
    std::uint64_t entrySize = 0;
};

// Loads one file. Its steps answer false when the load fails as a whole.
class Loader {
public:
    explicit Loader(const FileRanges& file) : file_(file), budget_(file.size()) {}

    bool load();
    ElfReaderPrivate takeRecord() { return std::move(record_); }

private:
    bool readIdentification();
    bool readSectionTable();
    bool readSections();
    bool readDynamicSection(const Section& section);
    void keepDynamicEntry(std::uint64_t tag, std::string_view name);
    bool readSymbolTable(const Section& section);

    Section section(const ByteView& header) const;
    std::optional<std::string> bytesOf(const Section& section);
    std::optional<std::string> stringsOf(const Section& section);

    const FileRanges& file_;
    ElfBudget budget_;
    ElfLayout layout_ = kElfLayout64;
    ByteOrder order_ = ByteOrder::Big;
    std::vector<Section> sections_;
    ElfReaderPrivate record_;
};

bool Loader::load() {
    return readIdentification() && readSectionTable() && readSections();
}

bool Loader::readIdentification() {
    const std::optional<std::string> identification = file_.read(0, EI_NIDENT);
    if (!identification || !identification->starts_with(ELFMAG)) {
        return false;
    }
    switch ((*identification)[EI_CLASS]) {
        case ELFCLASS32:
            layout_ = kElfLayout32;
            record_.elfClass = ElfClass::Elf32;
            break;
        case ELFCLASS64:
            layout_ = kElfLayout64;
            record_.elfClass = ElfClass::Elf64;
            break;
        default:
            return false;
    }
    const bool little = (*identification)[EI_DATA] == ELFDATA2LSB;
    order_ = little ? ByteOrder::Little : ByteOrder::Big;
    record_.encoding = little ? ElfEncoding::LittleEndian : ElfEncoding::BigEndian;
    return true;
}

// A table of records that are too small to be section headers tells nothing. Of one that runs over
// the end of the file, the headers that are there are read.
bool Loader::readSectionTable() {
    const std::optional<std::string> bytes = file_.read(0, layout_.header);
    if (!bytes) {
        return false;
    }
    const ByteView header(*bytes, order_);
    const std::uint64_t offset = header.number(layout_.tableOffset, layout_.word).value();
    const std::uint64_t stride = header.number(layout_.tableStride, kElfHalf).value();
    const std::uint64_t count = header.number(layout_.tableCount, kElfHalf).value();
    // With the offset inside the file, no sum below can overflow.
    if (stride < layout_.sectionHeader || offset > file_.size()) {
        return true;
    }
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t position = offset + i * stride;
        if (!file_.holds(position, layout_.sectionHeader)) {
            break;
        }
        const std::optional<std::string> record = file_.read(position, layout_.sectionHeader);
        if (!record) {
            return false;
        }
        sections_.push_back(section(ByteView(*record, order_)));
    }
    return true;
}

Section Loader::section(const ByteView& header) const {
    return {header.number(kElfSectionType, kElfWord).value(),
            header.number(layout_.sectionOffset, layout_.word).value(),
            header.number(layout_.sectionSize, layout_.word).value(),
            header.number(layout_.sectionLink, kElfWord).value(),
            header.number(layout_.sectionEntrySize, layout_.word).value()};
}

bool Loader::readSections() {
    for (const Section& section : sections_) {
        bool isReadable = true;
        if (section.type == SHT_DYNAMIC) {
            isReadable = readDynamicSection(section);
        } else if (section.type == SHT_SYMTAB || section.type == SHT_DYNSYM) {
            isReadable = readSymbolTable(section);
        }
        if (!isReadable) {
            return false;
        }
    }
    return true;
}

// As much of the section as lies inside the file.
std::optional<std::string> Loader::bytesOf(const Section& section) {
    if (section.type == SHT_NULL || section.type == SHT_NOBITS || section.offset > file_.size()) {
        return std::string();
    }
    const std::uint64_t size = std::min(section.size, file_.size() - section.offset);
    return budget_.spend(size) ? file_.read(section.offset, size) : std::nullopt;
}

std::optional<std::string> Loader::stringsOf(const Section& section) {
    return bytesOf(section.link < sections_.size() ? sections_[section.link] : Section());
}

std::uint64_t entryCount(const std::string& bytes, const Section& section) {
    return section.entrySize == 0 ? 0 : bytes.size() / section.entrySize;
}

bool Loader::readDynamicSection(const Section& section) {
    const std::optional<std::string> bytes = bytesOf(section);
    const std::optional<std::string> strings = bytes ? stringsOf(section) : std::nullopt;
    if (!strings) {
        return false;
    }
    const ByteView entries(*bytes, order_);
    const ByteView names(*strings, order_);
    const std::uint64_t count = entryCount(*bytes, section);
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t offset = i * section.entrySize;
        // An entry size below that of an entry lets the last ones run over the end.
        const std::optional<std::uint64_t> value =
            entries.number(offset + layout_.word, layout_.word);
        const std::uint64_t tag = entries.number(offset, layout_.word).value_or(DT_NULL);
        if (!value || tag == DT_NULL) {
            break;
        }
        const bool isWanted = tag == DT_NEEDED || tag == DT_RPATH;
        const std::string_view name = isWanted ? names.text(*value) : std::string_view();
        if (!budget_.spendEntry(name.size())) {
            return false;
        }
        keepDynamicEntry(tag, name);
    }
    return true;
}

// An empty run path does not clear an earlier one.
void Loader::keepDynamicEntry(std::uint64_t tag, std::string_view name) {
    if (name.empty()) {
        return;
    }
    if (tag == DT_NEEDED) {
        record_.libraries.emplace_back(name);
    } else {
        record_.rpath = name;
    }
}

bool Loader::readSymbolTable(const Section& section) {
    const std::optional<std::string> bytes = bytesOf(section);
    const std::optional<std::string> strings = bytes ? stringsOf(section) : std::nullopt;
    if (!strings) {
        return false;
    }
    const ByteView entries(*bytes, order_);
    const ByteView names(*strings, order_);
    const std::uint64_t count = entryCount(*bytes, section);
    for (std::uint64_t i = 0; i < count; ++i) {
        // Without a name where the entry runs over the end of the table.
        const std::optional<std::uint64_t> offset =
            entries.number(i * section.entrySize + kElfSymbolName, kElfWord);
        const std::string_view name = offset ? names.text(*offset) : std::string_view();
        if (!budget_.spendEntry(name.size())) {
            return false;
        }
        record_.symbols.emplace_back(name);
    }
    return true;
}

}  // namespace

ElfReaderPrivate readElf(const std::string& path) {
    const FileRanges file(path);
    Loader loader(file);
    return loader.load() ? loader.takeRecord() : ElfReaderPrivate();
}

}  // namespace pkgvet
