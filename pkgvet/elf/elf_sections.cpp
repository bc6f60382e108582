// Reads symbol tables and dynamic sections, with every offset checked.
#include "pkgvet/elf/elf_sections.h"

#include <elf.h>

#include <algorithm>
#include <utility>

#include "pkgvet/elf/byte_view.h"
#include "pkgvet/elf/elf_budget.h"

namespace pkgvet {

namespace {

bool isSymbolTable(const ElfSection& section) {
    return section.type == SHT_SYMTAB || section.type == SHT_DYNSYM;
}

// What the header states counts, also where the file has fewer bytes.
std::uint64_t entryCount(const ElfSection& section) {
    return section.entrySize == 0 ? 0 : section.size / section.entrySize;
}

// Its steps answer false when the file cannot be loaded.
class SectionReader {
public:
    SectionReader(const ElfHeader& header, std::uint64_t fileSize,
                  const std::vector<ElfSection>& sections, const LoadElfSection& load)
        : header_(header),
          fileSize_(fileSize),
          sections_(sections),
          load_(load),
          loaded_(sections.size()) {}

    bool read();
    ElfReaderPrivate takeRecord() { return std::move(record_); }

private:
    bool reserveSymbols();
    bool readDynamicSection(std::size_t index);
    bool keepDynamicEntry(std::uint64_t tag, const ByteView& names, std::uint64_t offset);
    bool readSymbolTable(std::size_t index);
    bool keepRunPath();

    std::optional<ByteView> bytesOf(std::uint64_t index);

    const ElfHeader& header_;
    const std::uint64_t fileSize_;
    const std::vector<ElfSection>& sections_;
    const LoadElfSection& load_;
    std::vector<std::optional<std::string_view>> loaded_;
    ElfBudget budget_;
    // The strings and the offset of the last run path so far. To copy each on the way to the last
    // would take long where many lie in one long string.
    std::optional<std::pair<ByteView, std::uint64_t>> runPath_;
    ElfReaderPrivate record_;
};

bool SectionReader::read() {
    record_.elfClass = header_.elfClass;
    record_.encoding = header_.encoding;
    if (!reserveSymbols()) {
        return false;
    }
    for (std::size_t i = 0; i < sections_.size(); ++i) {
        if (sections_[i].type == SHT_DYNAMIC && !readDynamicSection(i)) {
            return false;
        }
        if (isSymbolTable(sections_[i]) && !readSymbolTable(i)) {
            return false;
        }
    }
    return keepRunPath();
}

// Pays for all names at once, so that a count that no machine can hold costs neither memory nor
// time, and the list of names never takes twice its size while it grows.
bool SectionReader::reserveSymbols() {
    std::uint64_t total = 0;
    for (const ElfSection& section : sections_) {
        if (isSymbolTable(section)) {
            const std::uint64_t count = entryCount(section);
            if (!budget_.spendNames(count)) {
                return false;
            }
            total += count;
        }
    }
    record_.symbols.reserve(total);
    return true;
}

// As much of the section as lies inside the file.
std::optional<ByteView> SectionReader::bytesOf(std::uint64_t index) {
    const ByteView none({}, header_.order());
    if (index >= sections_.size()) {
        return none;
    }
    const ElfSection& section = sections_[index];
    if (section.type == SHT_NULL || section.type == SHT_NOBITS || section.offset >= fileSize_) {
        return none;
    }
    std::optional<std::string_view>& bytes = loaded_[index];
    if (!bytes) {
        const std::uint64_t size = std::min(section.size, fileSize_ - section.offset);
        bytes = budget_.spend(size) ? load_(index, size) : std::nullopt;
    }
    return bytes ? std::optional(ByteView(*bytes, header_.order())) : std::nullopt;
}

bool SectionReader::readDynamicSection(std::size_t index) {
    const ElfSection& section = sections_[index];
    const std::optional<ByteView> entries = bytesOf(index);
    const std::optional<ByteView> names = entries ? bytesOf(section.link) : std::nullopt;
    if (!names) {
        return false;
    }
    const unsigned word = header_.layout.word;
    const std::uint64_t count = entryCount(section);
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t offset = i * section.entrySize;
        // An entry size below that of an entry lets the last ones run over the end.
        const std::optional<std::uint64_t> value = entries->number(offset + word, word);
        const std::uint64_t tag = entries->number(offset, word).value_or(DT_NULL);
        if (!value || tag == DT_NULL) {
            break;
        }
        if (!keepDynamicEntry(tag, *names, *value)) {
            return false;
        }
    }
    return true;
}

// An empty name is not a library, and does not clear an earlier run path.
bool SectionReader::keepDynamicEntry(std::uint64_t tag, const ByteView& names,
                                     std::uint64_t offset) {
    const bool isEmpty = names.number(offset, 1).value_or(0) == 0;
    if (tag == DT_RPATH && !isEmpty) {
        runPath_.emplace(names, offset);
    }
    if (tag != DT_NEEDED || isEmpty) {
        return true;
    }
    const std::string_view name = names.text(offset);
    if (!budget_.spendNames(1) || !budget_.spend(name.size())) {
        return false;
    }
    record_.libraries.emplace_back(name);
    return true;
}

bool SectionReader::readSymbolTable(std::size_t index) {
    const ElfSection& section = sections_[index];
    const std::optional<ByteView> entries = bytesOf(index);
    const std::optional<ByteView> names = entries ? bytesOf(section.link) : std::nullopt;
    if (!names) {
        return false;
    }
    const std::size_t end = record_.symbols.size() + entryCount(section);
    for (std::uint64_t i = 0; record_.symbols.size() < end; ++i) {
        const std::optional<std::uint64_t> offset =
            entries->number(i * section.entrySize + kElfSymbolName, kElfWord);
        if (!offset) {
            break;
        }
        const std::string_view name = names->text(*offset);
        if (!budget_.spend(name.size())) {
            return false;
        }
        record_.symbols.emplace_back(name);
    }
    // The entries that lack their bytes.
    record_.symbols.resize(end);
    return true;
}

bool SectionReader::keepRunPath() {
    if (!runPath_) {
        return true;
    }
    const std::string_view path = runPath_->first.text(runPath_->second);
    if (!budget_.spend(path.size())) {
        return false;
    }
    record_.rpath = path;
    return true;
}

}  // namespace

ElfReaderPrivate readElfSections(const ElfHeader& header, std::uint64_t fileSize,
                                 const std::vector<ElfSection>& sections,
                                 const LoadElfSection& load) {
    SectionReader reader(header, fileSize, sections, load);
    return reader.read() ? reader.takeRecord() : ElfReaderPrivate();
}

}  // namespace pkgvet
