// The content of a file of the payload.
#pragma once

#include <string>

namespace pkgvet::cli {

// What is known of a file once it was read from its beginning to its end.
struct FileContent {
    std::string digest;  // in hexadecimal; empty for an algorithm that librpm does not have
    bool holdsNul = false;
    int error = 0;  // why it could not be read
};

// Reads the file at path, on disk. algorithm is librpm's number. Links are not followed, and what
// is not a file cannot be read.
FileContent readContent(const std::string& path, int algorithm);

}  // namespace pkgvet::cli
