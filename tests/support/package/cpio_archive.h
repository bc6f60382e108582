// Archives of cpio, byte by byte, also such as no tool would write.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// One entry in the format newc. Each field is written as it stands, whether it fits the others or
// not.
struct CpioEntry {
    std::string name;       // may hold NUL bytes
    std::string data = {};  // of a file, or the target of a link
    std::uint32_t mode = 0100644;
    std::uint32_t inode = 1;
    std::uint32_t user = 0;
    std::uint32_t group = 0;
    std::uint32_t links = 1;
    std::uint32_t time = 0;
    std::uint32_t deviceMajor = 0;
    std::uint32_t deviceMinor = 0;
    std::uint32_t specialMajor = 0;  // of a device node
    std::uint32_t specialMinor = 0;
    std::uint32_t checksum = 0;
    std::string magic = "070701";
    // What the entry claims, in place of the true size: of the name with the NUL byte that ends
    // it, and of the data.
    std::optional<std::uint32_t> nameSize = {};
    std::optional<std::uint32_t> dataSize = {};
    char padding = '\0';
};

// The bytes of one entry, to be joined with those of others.
std::string cpioEntry(const CpioEntry& entry);

// An entry as rpm writes it for packages with large files: it has only the number of a file in the
// header of the package, which knows the rest.
std::string cpioLargeFileEntry(std::uint32_t fileNumber, const std::string& data);

std::string cpioTrailer();
