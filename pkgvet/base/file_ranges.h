// Ranges of a regular file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "pkgvet/base/regular_file.h"

namespace pkgvet {

// A regular file that is open for reading, links followed. Anything else behind the path (a
// directory, fifo, socket or device) does not open, and is not waited for.
//
// Ranges are copied out of the file, not mapped: a mapping of a file that somebody truncates ends
// the process on the next access.
class FileRanges {
public:
    explicit FileRanges(const std::string& path) : file_(openRegularFile(path)) {}

    bool isOpen() const { return file_.descriptor.isOpen(); }
    int descriptor() const { return file_.descriptor.get(); }
    // As it was on opening; 0 for a file that the kernel generates.
    std::uint64_t size() const { return file_.size; }

    // Whether size bytes at offset lie inside the file as it was on opening.
    bool holds(std::uint64_t offset, std::uint64_t size) const {
        return offset <= file_.size && size <= file_.size - offset;
    }
    // These bytes; nothing when the file does not hold them, no longer holds them or cannot be
    // read.
    std::optional<std::string> read(std::uint64_t offset, std::uint64_t size) const;

private:
    OpenFile file_;
};

}  // namespace pkgvet
