#include "tests/support/elf/elf_image.h"

#include <elf.h>

#include <cstdint>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

using Fields = std::map<std::string, std::uint64_t>;

const Fields kTypes = {{"null", SHT_NULL},     {"strtab", SHT_STRTAB},   {"symtab", SHT_SYMTAB},
                       {"dynsym", SHT_DYNSYM}, {"dynamic", SHT_DYNAMIC}, {"progbits", SHT_PROGBITS},
                       {"nobits", SHT_NOBITS}};
const Fields kTags = {{"needed", DT_NEEDED}, {"rpath", DT_RPATH}, {"runpath", DT_RUNPATH}};

std::uint64_t parseNumber(const std::string& text) {
    return std::stoull(text, nullptr, 0);
}

std::pair<std::string, std::uint64_t> parseField(const std::string& word) {
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos) {
        throw std::runtime_error("no field: " + word);
    }
    return {word.substr(0, equals), parseNumber(word.substr(equals + 1))};
}

struct Section {
    std::uint64_t type = SHT_NULL;
    Fields fields;
    std::string bytes;

    std::uint64_t field(const std::string& key, std::uint64_t otherwise) const {
        const auto found = fields.find(key);
        return found == fields.end() ? otherwise : found->second;
    }
};

class Writer {
public:
    std::string write(std::string_view description);

private:
    void readLine(const std::string& keyword, std::istringstream& words);
    void beginSection(std::istringstream& words);
    void addSymbol(std::uint64_t nameOffset);
    void addEntry(std::uint64_t tag, std::uint64_t value);
    std::uint64_t nameOffset(const std::string& name);
    std::uint64_t recordSize(std::uint64_t type) const;

    std::string number(std::uint64_t value, unsigned width) const;
    std::string word(std::uint64_t value) const { return number(value, wide_ ? 8 : 4); }
    std::string header(std::uint64_t tableOffset) const;
    std::string sectionHeader(const Section& section, std::uint64_t offset) const;

    bool wide_ = true;
    bool big_ = false;
    std::vector<Section> sections_ = {Section()};
    Fields header_;
    std::map<std::uint64_t, char> bytes_;
    std::optional<std::uint64_t> end_;
};

std::string Writer::number(std::uint64_t value, unsigned width) const {
    std::string digits;
    for (unsigned i = 0; i < width; ++i) {
        const unsigned shift = 8 * (big_ ? width - 1 - i : i);
        digits += static_cast<char>(value >> shift & 0xFFU);
    }
    return digits;
}

std::uint64_t Writer::recordSize(std::uint64_t type) const {
    switch (type) {
        case SHT_SYMTAB:
        case SHT_DYNSYM:
            return wide_ ? sizeof(Elf64_Sym) : sizeof(Elf32_Sym);
        case SHT_DYNAMIC:
            return wide_ ? sizeof(Elf64_Dyn) : sizeof(Elf32_Dyn);
        default:
            return 0;
    }
}

void Writer::beginSection(std::istringstream& words) {
    Section section;
    std::string type;
    words >> type;
    section.type = kTypes.contains(type) ? kTypes.at(type) : parseNumber(type);
    for (std::string field; words >> field;) {
        section.fields.insert(parseField(field));
    }
    if (section.type == SHT_STRTAB) {
        section.bytes = std::string(1, '\0');
    }
    const bool hasSymbols = section.type == SHT_SYMTAB || section.type == SHT_DYNSYM;
    sections_.push_back(std::move(section));
    if (hasSymbols) {
        addSymbol(0);
    }
}

std::uint64_t Writer::nameOffset(const std::string& name) {
    if (name == "-") {
        return 0;
    }
    if (name.starts_with("@")) {
        return parseNumber(name.substr(1));
    }
    std::string& strings = sections_.at(sections_.back().field("link", 0)).bytes;
    const std::size_t known = strings.find('\0' + name + '\0');
    if (known != std::string::npos) {
        return known + 1;
    }
    strings += name + '\0';
    return strings.size() - name.size() - 1;
}

void Writer::addSymbol(std::uint64_t nameOffset) {
    std::string symbol = number(nameOffset, 4);
    symbol.resize(recordSize(SHT_SYMTAB));
    sections_.back().bytes += symbol;
}

void Writer::addEntry(std::uint64_t tag, std::uint64_t value) {
    sections_.back().bytes += word(tag) + word(value);
}

void Writer::readLine(const std::string& keyword, std::istringstream& words) {
    std::string first;
    std::string second;
    if (keyword == "section") {
        beginSection(words);
        return;
    }
    words >> first >> second;
    std::string& bytes = sections_.back().bytes;
    if (keyword == "elf") {
        wide_ = first == "64";
        big_ = second == "big";
    } else if (keyword == "text") {
        bytes += first + '\0';
    } else if (keyword == "symbol") {
        addSymbol(nameOffset(first));
    } else if (kTags.contains(keyword)) {
        addEntry(kTags.at(keyword), nameOffset(first));
    } else if (keyword == "tag") {
        addEntry(parseNumber(first), parseNumber(second));
    } else if (keyword == "drop") {
        bytes.resize(bytes.size() - parseNumber(first));
    } else if (keyword == "set") {
        header_.insert(parseField(first));
    } else if (keyword == "byte") {
        const auto [offset, value] = parseField(first);
        bytes_[parseNumber(offset)] = static_cast<char>(value);
    } else if (keyword == "end") {
        end_ = parseNumber(first);
    } else {
        throw std::runtime_error("no item: " + keyword);
    }
}

std::string Writer::header(std::uint64_t tableOffset) const {
    const auto field = [this](const std::string& key, std::uint64_t otherwise) {
        const auto found = header_.find(key);
        return found == header_.end() ? otherwise : found->second;
    };
    std::string text = {ELFMAG0, ELFMAG1, ELFMAG2, ELFMAG3};
    text += static_cast<char>(wide_ ? ELFCLASS64 : ELFCLASS32);
    text += static_cast<char>(big_ ? ELFDATA2MSB : ELFDATA2LSB);
    text += static_cast<char>(EV_CURRENT);
    text.resize(EI_NIDENT);
    text += number(ET_DYN, 2) + number(wide_ ? EM_X86_64 : EM_386, 2) + number(EV_CURRENT, 4);
    text += word(0) + word(0) + word(field("shoff", tableOffset)) + number(0, 4);
    const std::uint64_t headerSize = wide_ ? sizeof(Elf64_Ehdr) : sizeof(Elf32_Ehdr);
    const std::uint64_t stride = wide_ ? sizeof(Elf64_Shdr) : sizeof(Elf32_Shdr);
    text += number(headerSize, 2) + number(0, 2) + number(0, 2);
    text += number(field("shentsize", stride), 2) + number(field("shnum", sections_.size()), 2);
    return text + number(0, 2);
}

std::string Writer::sectionHeader(const Section& section, std::uint64_t offset) const {
    return number(section.field("name", 0), 4) + number(section.type, 4) + word(0) + word(0) +
           word(section.field("offset", offset)) +
           word(section.field("size", section.bytes.size())) + number(section.field("link", 0), 4) +
           number(0, 4) + word(0) + word(section.field("entsize", recordSize(section.type)));
}

std::string Writer::write(std::string_view description) {
    std::istringstream lines{std::string(description)};
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string keyword;
        if (words >> keyword) {
            readLine(keyword, words);
        }
    }
    std::string contents;
    std::string table;
    const std::uint64_t begin = wide_ ? sizeof(Elf64_Ehdr) : sizeof(Elf32_Ehdr);
    for (const Section& section : sections_) {
        table += sectionHeader(section, begin + contents.size());
        contents += section.bytes;
    }
    std::string image = header(begin + contents.size()) + contents + table;
    image.resize(end_.value_or(image.size()));
    for (const auto& [offset, byte] : bytes_) {
        image.at(offset) = byte;
    }
    return image;
}

}  // namespace

std::string elfImage(std::string_view description) {
    return Writer().write(description);
}
