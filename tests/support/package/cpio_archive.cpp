#include "tests/support/package/cpio_archive.h"

#include <array>
#include <cstdio>

namespace {

constexpr std::size_t kAlignment = 4;
constexpr std::size_t kHeaderSize = 110;
constexpr std::size_t kLargeFileHeaderSize = 14;

std::string hexadecimal(std::uint32_t number) {
    std::array<char, 9> digits{};
    std::snprintf(digits.data(), digits.size(), "%08x", number);
    return digits.data();
}

std::string padding(std::size_t size, char filling) {
    return std::string((kAlignment - size % kAlignment) % kAlignment, filling);
}

}  // namespace

std::string cpioEntry(const CpioEntry& entry) {
    const std::size_t nameSize = entry.name.size() + 1;
    std::string bytes = entry.magic;
    for (const std::uint32_t field :
         {entry.inode, entry.mode, entry.user, entry.group, entry.links, entry.time,
          entry.dataSize.value_or(static_cast<std::uint32_t>(entry.data.size())), entry.deviceMajor,
          entry.deviceMinor, entry.specialMajor, entry.specialMinor,
          entry.nameSize.value_or(static_cast<std::uint32_t>(nameSize)), entry.checksum}) {
        bytes += hexadecimal(field);
    }
    bytes += entry.name + '\0' + padding(kHeaderSize + nameSize, entry.padding);
    return bytes + entry.data + padding(entry.data.size(), entry.padding);
}

std::string cpioLargeFileEntry(std::uint32_t fileNumber, const std::string& data) {
    return "07070X" + hexadecimal(fileNumber) + padding(kLargeFileHeaderSize, '\0') + data +
           padding(data.size(), '\0');
}

std::string cpioTrailer() {
    CpioEntry trailer;
    trailer.name = "TRAILER!!!";
    trailer.mode = 0;
    trailer.inode = 0;
    return cpioEntry(trailer);
}
