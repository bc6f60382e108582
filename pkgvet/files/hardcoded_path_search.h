// The search for the home directory of the platform's default user in the text of a file.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pkgvet {

// Takes a text piece by piece, in one pass without ever going back, and sees it without its white
// space. It is no substring search: a character that ends a partial match is dropped and begins no
// new one, so that "//home/defaultuser" and "/home/home/defaultuser" hold no hit.
//
// Where the pieces are cut makes no difference. An object is for one text.
class HardcodedPathSearch {
public:
    // Takes the next piece. Whether the path has been found in it; the search is over then.
    bool feed(std::string_view piece);

private:
    std::size_t matched_ = 0;  // characters of the path that the text last held
};

// Whether the text of the regular file that path leads to, on disk, holds that path. What is no
// regular file, or cannot be opened, has no text. buffer is for the pieces, so that a caller with
// many files makes it once.
bool holdsHardcodedPath(const std::string& path, std::string* buffer);

}  // namespace pkgvet
