// The content of a file of the payload.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// What is known of a file once it was read from its beginning to its end.
struct FileContent {
    std::string digest;  // in hexadecimal; empty for an algorithm that librpm does not have
    bool holdsNul = false;
    int error = 0;  // why it could not be read
};

// Reads files one after the other, with the memory that one of them takes. An object is for one
// thread.
class ContentReader {
public:
    // algorithm is librpm's number.
    explicit ContentReader(int algorithm);

    // Reads the file at path, on disk. Links are not followed, and what is not a file cannot be
    // read.
    FileContent read(const std::string& path);

    // Takes a piece of a file, and says whether to go on behind it.
    using PieceUse = std::function<bool(std::string_view piece)>;

    // Reads a file from where it stands to its end. Nothing when it was not to go on.
    std::optional<FileContent> read(const Descriptor& file, const PieceUse& use);

private:
    int algorithm_;
    std::unique_ptr<char[]> piece_;
};

}  // namespace pkgvet::cli
