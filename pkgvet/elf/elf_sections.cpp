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

// Of the entries of a symbol table that are in memory at a time.
constexpr std::uint64_t kPieceSize = std::uint64_t{64} << 10U;

// Its steps answer false when the file cannot be loaded.
class SectionReader {
public:
    SectionReader(const ElfHeader& header, std::uint64_t fileSize,
                  const std::vector<ElfSection>& sections, const ElfSectionSource& source,
                  const SymbolVisitor& visit, ElfBudget* budget)
        : header_(header),
          fileSize_(fileSize),
          sections_(sections),
          source_(source),
          visit_(visit),
          budget_(*budget),
          loaded_(sections.size()),
          isPaid_(sections.size()) {}

    bool read();
    ElfReaderPrivate takeRecord() { return std::move(record_); }

private:
    bool payForSymbols();
    bool payForOverlaps(std::size_t index);
    bool readDynamicSection(std::size_t index);
    bool keepDynamicEntry(std::uint64_t tag, const ByteView& names, std::uint64_t offset);
    bool readSymbolTable(std::size_t index);
    bool keepRunPath();

    std::uint64_t sizeOf(std::uint64_t index) const;
    bool pay(std::uint64_t index);
    std::optional<ByteView> bytesOf(std::uint64_t index);
    bool loadPiece(std::size_t index, std::uint64_t offset);
    std::optional<std::uint64_t> nameOffset(std::size_t index, std::uint64_t position,
                                            bool* isRead);

    const ElfHeader& header_;
    const std::uint64_t fileSize_;
    const std::vector<ElfSection>& sections_;
    const ElfSectionSource& source_;
    const SymbolVisitor& visit_;
    ElfBudget& budget_;
    std::vector<std::optional<std::string_view>> loaded_;
    std::vector<bool> isPaid_;
    std::uint64_t symbols_ = 0;  // in all tables
    std::string piece_;          // of a symbol table, from pieceBegin_ on
    std::uint64_t pieceBegin_ = 0;
    // The strings and the offset of the last run path so far. To copy each on the way to the last
    // would take long where many lie in one long string.
    std::optional<std::pair<ByteView, std::uint64_t>> runPath_;
    ElfReaderPrivate record_;
};

bool SectionReader::read() {
    record_.elfClass = header_.elfClass;
    record_.encoding = header_.encoding;
    if (!payForSymbols()) {
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
// time.
bool SectionReader::payForSymbols() {
    for (const ElfSection& section : sections_) {
        if (isSymbolTable(section)) {
            const std::uint64_t count = entryCount(section);
            if (!budget_.spendNames(count)) {
                return false;
            }
            symbols_ += count;
        }
    }
    return true;
}

// Of the part that lies inside the file.
std::uint64_t SectionReader::sizeOf(std::uint64_t index) const {
    if (index >= sections_.size()) {
        return 0;
    }
    const ElfSection& section = sections_[index];
    if (section.type == SHT_NULL || section.type == SHT_NOBITS || section.offset >= fileSize_) {
        return 0;
    }
    return std::min(section.size, fileSize_ - section.offset);
}

// Once for each section, however it is read and however often.
bool SectionReader::pay(std::uint64_t index) {
    const std::uint64_t size = sizeOf(index);
    if (size == 0 || isPaid_[index]) {
        return true;
    }
    isPaid_[index] = true;
    return budget_.spend(size);
}

// As much of the section as lies inside the file.
std::optional<ByteView> SectionReader::bytesOf(std::uint64_t index) {
    const std::uint64_t size = sizeOf(index);
    if (size == 0) {
        return ByteView({}, header_.order());
    }
    std::optional<std::string_view>& bytes = loaded_[index];
    if (!bytes && pay(index)) {
        bytes = source_.load(index, size);
    }
    return bytes ? std::optional(ByteView(*bytes, header_.order())) : std::nullopt;
}

// Pays for each entry as for a symbol where entries overlap, of which a section then may have as
// many as it has bytes.
bool SectionReader::payForOverlaps(std::size_t index) {
    const ElfSection& section = sections_[index];
    const std::uint64_t whole = std::uint64_t{2} * header_.layout.word;
    const std::uint64_t count = std::min(entryCount(section), sizeOf(index));
    return section.entrySize >= whole || budget_.spendNames(count);
}

bool SectionReader::readDynamicSection(std::size_t index) {
    const ElfSection& section = sections_[index];
    const std::optional<ByteView> entries = payForOverlaps(index) ? bytesOf(index) : std::nullopt;
    const std::optional<ByteView> names = entries ? bytesOf(section.link) : std::nullopt;
    if (!names) {
        return false;
    }
    const unsigned word = header_.layout.word;
    const std::uint64_t count = entryCount(section);
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t offset = i * section.entrySize;
        const std::uint64_t tag = entries->number(offset, word).value_or(DT_NULL);
        if (tag == DT_NULL) {
            break;
        }
        if (tag != DT_RPATH && tag != DT_NEEDED) {
            continue;
        }
        // An entry size below that of an entry lets the last ones run over the end.
        const std::optional<std::uint64_t> value = entries->number(offset + word, word);
        if (!value) {
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

bool SectionReader::loadPiece(std::size_t index, std::uint64_t offset) {
    const std::uint64_t size = std::min(kPieceSize, sizeOf(index) - offset);
    std::optional<std::string> bytes = source_.copy(index, offset, size);
    if (bytes) {
        piece_ = std::move(*bytes);
        pieceBegin_ = offset;
    }
    return bytes.has_value();
}

// The number at position in a symbol table; nothing behind its end, and where it cannot be read.
std::optional<std::uint64_t> SectionReader::nameOffset(std::size_t index, std::uint64_t position,
                                                       bool* isRead) {
    const std::uint64_t size = sizeOf(index);
    if (position > size || size - position < kElfWord) {
        return std::nullopt;
    }
    const bool isInPiece =
        position >= pieceBegin_ && position + kElfWord <= pieceBegin_ + piece_.size();
    if (!isInPiece && !loadPiece(index, position)) {
        *isRead = false;
        return std::nullopt;
    }
    return ByteView(piece_, header_.order()).number(position - pieceBegin_, kElfWord);
}

bool SectionReader::readSymbolTable(std::size_t index) {
    const ElfSection& section = sections_[index];
    const std::optional<ByteView> names = pay(index) ? bytesOf(section.link) : std::nullopt;
    if (!names) {
        return false;
    }
    bool isRead = true;
    piece_.clear();
    const std::uint64_t count = entryCount(section);
    std::uint64_t i = 0;
    for (; i < count; ++i) {
        const std::optional<std::uint64_t> offset =
            nameOffset(index, i * section.entrySize + kElfSymbolName, &isRead);
        if (!offset) {
            break;
        }
        const std::string_view name = names->text(*offset);
        if (!budget_.spend(name.size())) {
            return false;
        }
        visit_({name, 1, symbols_});
    }
    // The entries that lack their bytes.
    if (isRead && i < count) {
        visit_({{}, count - i, symbols_});
    }
    return isRead;
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
                                 const ElfSectionSource& source, const SymbolVisitor& visit,
                                 ElfAllowance* allowance) {
    ElfBudget budget = allowance->budgetFor(fileSize);
    SectionReader reader(header, fileSize, sections, source, visit, &budget);
    const bool isRead = reader.read();
    allowance->pay(budget);
    return isRead ? reader.takeRecord() : ElfReaderPrivate();
}

}  // namespace pkgvet
