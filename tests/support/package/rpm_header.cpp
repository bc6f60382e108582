#include "tests/support/package/rpm_header.h"

#include <rpm/rpmtag.h>

namespace {

constexpr const char kMagic[] = "\x8e\xad\xe8\x01\0\0\0\0";
constexpr std::uint32_t kIndexEntrySize = 16;

template <typename Number>
std::string networkOrder(Number number) {
    std::string bytes;
    for (std::size_t i = sizeof(Number); i-- > 0;) {
        bytes.push_back(static_cast<char>(static_cast<std::uint64_t>(number) >> (8 * i)));
    }
    return bytes;
}

template <typename Number>
RpmValue numbersOf(std::uint32_t type, const std::vector<Number>& numbers) {
    RpmValue value{type, static_cast<std::uint32_t>(numbers.size()), std::string()};
    for (const Number number : numbers) {
        value.bytes += networkOrder(number);
    }
    return value;
}

std::size_t alignmentOf(std::uint32_t type) {
    switch (type) {
        case RPM_INT16_TYPE:
            return 2;
        case RPM_INT32_TYPE:
            return 4;
        case RPM_INT64_TYPE:
            return 8;
        default:
            return 1;
    }
}

std::string indexEntry(std::uint32_t tag, std::uint32_t type, std::uint32_t offset,
                       std::uint32_t count) {
    return networkOrder(tag) + networkOrder(type) + networkOrder(offset) + networkOrder(count);
}

// The region says how far the header was made in one piece, which is all of it. An index entry
// at the front names its place, and there a second one points back to the start of the index.
std::string regionEntry(std::uint32_t regionTag, std::uint32_t offset) {
    return indexEntry(regionTag, RPM_BIN_TYPE, offset, kIndexEntrySize);
}

}  // namespace

RpmValue rpmInt16(const std::vector<std::uint16_t>& numbers) {
    return numbersOf(RPM_INT16_TYPE, numbers);
}

RpmValue rpmInt32(const std::vector<std::uint32_t>& numbers) {
    return numbersOf(RPM_INT32_TYPE, numbers);
}

RpmValue rpmInt64(const std::vector<std::uint64_t>& numbers) {
    return numbersOf(RPM_INT64_TYPE, numbers);
}

RpmValue rpmText(const std::string& text) {
    return {RPM_STRING_TYPE, 1, text + '\0'};
}

RpmValue rpmTexts(const std::vector<std::string>& texts) {
    RpmValue value{RPM_STRING_ARRAY_TYPE, static_cast<std::uint32_t>(texts.size()), std::string()};
    for (const std::string& text : texts) {
        value.bytes += text + '\0';
    }
    return value;
}

RpmValue rpmI18nText(const std::string& text) {
    return {RPM_I18NSTRING_TYPE, 1, text + '\0'};
}

RpmValue rpmBinary(const std::string& bytes) {
    return {RPM_BIN_TYPE, static_cast<std::uint32_t>(bytes.size()), bytes};
}

RpmHeader& RpmHeader::set(std::uint32_t tag, const RpmValue& value) {
    return remove(tag).add(tag, value);
}

RpmHeader& RpmHeader::add(std::uint32_t tag, const RpmValue& value) {
    values_.emplace(tag, value);
    return *this;
}

RpmHeader& RpmHeader::remove(std::uint32_t tag) {
    values_.erase(tag);
    return *this;
}

std::string RpmHeader::bytes(std::uint32_t regionTag) const {
    std::string index;
    std::string store;
    for (const auto& [tag, value] : values_) {
        const std::size_t alignment = alignmentOf(value.type);
        store.resize((store.size() + alignment - 1) / alignment * alignment, '\0');
        index += indexEntry(tag, value.type, static_cast<std::uint32_t>(store.size()), value.count);
        store += value.bytes;
    }
    const auto entries = static_cast<std::uint32_t>(values_.size() + 1);
    index.insert(0, regionEntry(regionTag, static_cast<std::uint32_t>(store.size())));
    store += regionEntry(regionTag, 0U - entries * kIndexEntrySize);
    return std::string(kMagic, sizeof kMagic - 1) + networkOrder(entries) +
           networkOrder(static_cast<std::uint32_t>(store.size())) + index + store;
}
