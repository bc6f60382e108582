// The fixed part of an entry.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <tuple>

namespace pkgvet::cli {

// The format that rpm writes, which is known as newc.
inline constexpr std::string_view kEntryMagic = "070701";

// What all formats of cpio with text begin with, and that of rpm for large files.
inline constexpr std::string_view kFormatMagic = "0707";

// Magic and fields.
inline constexpr std::size_t kFieldsEnd = 110;

// Entries begin at multiples of this, and so does their data.
inline constexpr std::size_t kAlignment = 4;

// The fields that matter to what is unpacked, as they stand there.
struct EntryFields {
    std::uint32_t inode = 0;
    std::uint32_t mode = 0;
    std::uint32_t user = 0;
    std::uint32_t group = 0;
    std::uint32_t links = 0;
    std::uint32_t time = 0;  // of the last change, in seconds since 1970
    std::uint32_t dataSize = 0;
    std::uint32_t deviceMajor = 0;
    std::uint32_t deviceMinor = 0;
    std::uint32_t nameSize = 0;  // with the NUL byte at its end

    bool operator==(const EntryFields&) const = default;
};

// What the names of one file have in common.
using FileId = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>;

inline FileId fileIdOf(const EntryFields& fields) {
    return {fields.deviceMajor, fields.deviceMinor, fields.inode};
}

// Reads kFieldsEnd bytes. Nothing when one of the fields is not eight hexadecimal digits: cpio
// would read as much of such a field as it likes.
std::optional<EntryFields> readFields(std::string_view bytes);

// How many bytes follow behind size ones up to the next multiple.
constexpr std::size_t paddingOf(std::size_t size) {
    return (kAlignment - size % kAlignment) % kAlignment;
}

}  // namespace pkgvet::cli
