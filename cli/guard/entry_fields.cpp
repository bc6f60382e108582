// Reads the fixed part of an entry.
#include "cli/guard/entry_fields.h"

#include <array>
#include <charconv>
#include <system_error>

namespace pkgvet::cli {

namespace {

constexpr std::size_t kDigits = 8;
constexpr int kBase = 16;

// In the order of the format. The others say nothing of what is unpacked.
constexpr std::array<std::uint32_t EntryFields::*, 13> kFields = {
    &EntryFields::inode,
    &EntryFields::mode,
    &EntryFields::user,
    &EntryFields::group,
    &EntryFields::links,
    &EntryFields::time,
    &EntryFields::dataSize,
    &EntryFields::deviceMajor,
    &EntryFields::deviceMinor,
    nullptr,  // major number of a device
    nullptr,  // its minor number
    &EntryFields::nameSize,
    nullptr,  // checksum, in another format
};
static_assert(kEntryMagic.size() + kFields.size() * kDigits == kFieldsEnd);

}  // namespace

std::optional<EntryFields> readFields(std::string_view bytes) {
    EntryFields fields;
    const char* position = bytes.data() + kEntryMagic.size();
    for (std::uint32_t EntryFields::*const field : kFields) {
        const char* const end = position + kDigits;
        std::uint32_t value = 0;
        const auto [behind, error] = std::from_chars(position, end, value, kBase);
        if (error != std::errc() || behind != end) {
            return std::nullopt;
        }
        if (field != nullptr) {
            fields.*field = value;
        }
        position = end;
    }
    return fields;
}

}  // namespace pkgvet::cli
