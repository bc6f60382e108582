// The lines of a text file of any size.
#pragma once

#include <cstddef>
#include <string>

#include "pkgvet/base/regular_file.h"

namespace pkgvet {

// Longer lines are refused. Nobody writes one, and judging it takes ten times its size.
inline constexpr std::size_t kMaxLineSize = std::size_t{16} << 20;

// Reads a file line by line, as std::getline does: a line ends at a line feed, and what stands
// behind the last line feed is a line unless it is empty. What is not a regular file, or cannot be
// opened, has no lines.
class LineReader {
public:
    // path is a path on disk.
    explicit LineReader(const std::string& path);
    explicit LineReader(OpenFile file);

    // Puts the next line into line, without its line feed. False at the end. Throws
    // std::regex_error (error_space) for a line beyond the bound, as the engine would.
    bool next(std::string* line);

private:
    bool fill();

    RegularFileReader file_;
    std::string buffer_;
    std::size_t position_ = 0;  // of what has not been handed out
};

}  // namespace pkgvet
