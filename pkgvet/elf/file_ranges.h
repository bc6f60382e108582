// Ranges of a regular file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace pkgvet {

// A regular file that is open for reading, links followed. Anything else behind the path (a
// directory, fifo, socket or device) does not open, and is not waited for.
//
// Ranges are copied out of the file, not mapped: a mapping of a file that somebody truncates ends
// the process on the next access.
class FileRanges {
public:
    explicit FileRanges(const std::string& path);
    FileRanges(const FileRanges&) = delete;
    FileRanges(FileRanges&&) = delete;
    FileRanges& operator=(const FileRanges&) = delete;
    FileRanges& operator=(FileRanges&&) = delete;
    ~FileRanges();

    bool isOpen() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }
    // As it was on opening.
    std::uint64_t size() const { return size_; }

    // Whether size bytes at offset lie inside the file as it was on opening.
    bool holds(std::uint64_t offset, std::uint64_t size) const {
        return offset <= size_ && size <= size_ - offset;
    }
    // These bytes; nothing when the file does not hold them, no longer holds them or cannot be
    // read.
    std::optional<std::string> read(std::uint64_t offset, std::uint64_t size) const;

private:
    void close();

    int descriptor_ = -1;
    std::uint64_t size_ = 0;
};

}  // namespace pkgvet
