// The content of a file of the payload.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

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

    // Reads a file from where it stands to its end. Nothing when it was stopped, which is looked
    // for between two pieces.
    std::optional<FileContent> read(const Descriptor& file, const std::function<bool()>& isStopped);

private:
    int algorithm_;
    std::unique_ptr<char[]> piece_;
};

}  // namespace pkgvet::cli
