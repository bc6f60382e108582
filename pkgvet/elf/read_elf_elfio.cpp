// The sections of an ELF file as ELFIO loads them. ELFIO stands in front of our own headers, since
// the macros of elf.h would replace its constants.
#include <algorithm>
#include <elfio/elfio.hpp>
#include <istream>
#include <optional>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "pkgvet/base/file_ranges.h"
#include "pkgvet/elf/elf_header.h"
#include "pkgvet/elf/elf_layout.h"
#include "pkgvet/elf/elf_sections.h"
#include "pkgvet/elf/read_elf.h"

namespace pkgvet {

namespace {

// The header as ELFIO is to see it, whose other fields are judged without it: in one of the two
// byte orders that it knows, without segments, of which one that is damaged makes it give up, and
// without names of sections, of which it copies each, although all may be the same megabyte.
std::string headerForElfio(std::string bytes, const ElfHeader& header) {
    bytes[EI_DATA] = header.order() == ByteOrder::Little ? ELFDATA2LSB : ELFDATA2MSB;
    bytes.replace(header.layout.segmentCount, kElfHalf, kElfHalf, '\0');
    bytes.replace(header.layout.sectionNames, kElfHalf, kElfHalf, '\0');
    return bytes;
}

// The file as ELFIO reads it. A stream that has failed once reads nothing more, which would cost
// every section behind one that is damaged: here no seek and no read ever fails, and NUL bytes
// stand for those that the file does not have.
class FileBuffer : public std::streambuf {
public:
    // Header stands in for the beginning of the file until showBeginning is called.
    FileBuffer(const FileRanges& file, std::string header)
        : file_(file), header_(std::move(header)) {}

    void showBeginning() { header_.clear(); }
    // Whether bytes were missing that the file held when it was opened.
    bool hasFailed() const { return hasFailed_; }

private:
    static constexpr std::uint64_t kChunk = std::uint64_t{1} << 16U;

    std::streamsize xsgetn(char* to, std::streamsize count) override;
    pos_type seekoff(off_type offset, std::ios_base::seekdir from,
                     std::ios_base::openmode mode) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode mode) override;

    void readFile(char* to, std::uint64_t size);

    const FileRanges& file_;
    std::string header_;
    std::uint64_t position_ = 0;
    bool hasFailed_ = false;
};

std::streamsize FileBuffer::xsgetn(char* to, std::streamsize count) {
    std::fill_n(to, count, '\0');
    const auto size = static_cast<std::uint64_t>(count);
    if (position_ < file_.size()) {
        readFile(to, std::min(size, file_.size() - position_));
    }
    if (position_ < header_.size()) {
        header_.copy(to, size, position_);
    }
    position_ += size;
    return count;
}

void FileBuffer::readFile(char* to, std::uint64_t size) {
    for (std::uint64_t done = 0; done < size;) {
        const std::optional<std::string> chunk =
            file_.read(position_ + done, std::min(kChunk, size - done));
        if (!chunk) {
            hasFailed_ = true;
            return;
        }
        std::copy(chunk->begin(), chunk->end(), to + done);
        done += chunk->size();
    }
}

// ELFIO loads only sections smaller than the stream, so that the stream is a byte longer than the
// file: a section may be the whole file.
FileBuffer::pos_type FileBuffer::seekoff(off_type offset, std::ios_base::seekdir from,
                                         std::ios_base::openmode mode) {
    off_type start = 0;
    if (from == std::ios_base::cur) {
        start = static_cast<off_type>(position_);
    } else if (from == std::ios_base::end) {
        start = static_cast<off_type>(file_.size() + 1);
    }
    return seekpos(start + offset, mode);
}

FileBuffer::pos_type FileBuffer::seekpos(pos_type position, std::ios_base::openmode /*mode*/) {
    const off_type offset = std::max<off_type>(position, 0);
    position_ = static_cast<std::uint64_t>(offset);
    return offset;
}

// Those that lie inside the file. ELFIO has one for every section that the header states.
std::vector<ElfSection> sectionsOf(const ELFIO::elfio& elf, const ElfHeader& header) {
    std::vector<ElfSection> sections;
    for (ELFIO::Elf_Half i = 0; i < header.sectionCount; ++i) {
        const ELFIO::section* section = elf.sections[i];
        sections.push_back({section->get_type(), section->get_offset(), section->get_size(),
                            section->get_link(), section->get_entry_size()});
    }
    return sections;
}

ElfReaderPrivate readWithElfio(const FileRanges& file, const ElfHeader& header,
                               const std::string& headerBytes, const SymbolVisitor& visit,
                               ElfAllowance* allowance) {
    FileBuffer buffer(file, headerForElfio(headerBytes, header));
    std::istream stream(&buffer);
    ELFIO::elfio elf;
    constexpr bool kIsLazy = true;  // sections that nobody asks for cost nothing
    if (!elf.load(stream, kIsLazy) || elf.sections.size() < header.sectionCount ||
        buffer.hasFailed()) {
        return {};
    }
    buffer.showBeginning();
    const std::vector<ElfSection> sections = sectionsOf(elf, header);
    ElfSectionSource source;
    source.load = [&](std::size_t index, std::uint64_t size) -> std::optional<std::string_view> {
        ELFIO::section* section = elf.sections[static_cast<unsigned>(index)];
        section->set_size(size);  // ELFIO takes all of a section or nothing
        const char* bytes = section->get_data();
        if (bytes == nullptr || buffer.hasFailed()) {
            return std::nullopt;
        }
        return std::string_view(bytes, size);
    };
    source.copy = [&file, &sections](std::size_t index, std::uint64_t offset, std::uint64_t size) {
        return file.read(sections[index].offset + offset, size);
    };
    return readElfSections(header, file.size(), sections, source, visit, allowance);
}

}  // namespace

ElfReaderPrivate readElf(const std::string& path, const SymbolVisitor& visit,
                         ElfAllowance* allowance) {
    const FileRanges file(path);
    const std::optional<ElfHeader> header = readElfHeader(file);
    const auto bytes = header ? file.read(0, header->layout.header) : std::nullopt;
    return bytes ? readWithElfio(file, *header, *bytes, visit, allowance) : ElfReaderPrivate();
}

}  // namespace pkgvet
