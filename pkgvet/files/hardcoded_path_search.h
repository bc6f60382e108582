// The search for the home directory of the platform's default user in the text of a file.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

#include "pkgvet/base/regular_file.h"

namespace pkgvet {

// Takes a text piece by piece, in one pass without ever going back, and sees it without its white
// space. It is not a substring search: a character that ends a partial match is dropped and does
// not begin a new one, so that neither "//home/defaultuser" nor "/home/home/defaultuser" holds a
// hit.
//
// Where the pieces are cut makes no difference. An object is for one text.
class HardcodedPathSearch {
public:
    // Takes the next piece. Whether the path has been found in it; the search is over then.
    bool feed(std::string_view piece);

private:
    std::size_t matched_ = 0;  // characters of the path that the text last held
};

// Searches the files of one package. It reads each file once, whatever the number of its paths, and
// keeps the buffer that it reads through.
class HardcodedPathFinder {
public:
    // Whether the text of the file at path, on disk, holds the home directory. The path was found
    // to lead to a regular file; what cannot be opened has no text.
    bool isIn(const std::string& path);

private:
    std::map<FileIdentity, bool> answers_;
    std::string buffer_;
};

}  // namespace pkgvet
