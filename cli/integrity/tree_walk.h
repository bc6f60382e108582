// The tree that a payload was unpacked to.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <string>

namespace pkgvet::cli {

// What stands at a path of the tree.
struct TreeEntry {
    std::string path;  // in the package, with its leading "/"
    struct stat status;
    // Whether it can be read at any time, and not only while it is visited.
    bool isReadable;
};

// Called for each entry. It can be read then, whatever its mode and those of the directories above
// it.
using TreeVisitor = std::function<void(const TreeEntry& entry)>;

// Whether this process may read whatever modes say. To walk a tree then changes nothing in it.
bool mayReadAll();

// Visits all below root, directories ahead of what is in them; links are not followed. A directory
// or file that its owner may not read is made readable for as long as it takes. Throws
// std::system_error when something cannot be read all the same.
void walkTree(const std::string& root, const TreeVisitor& visit);

}  // namespace pkgvet::cli
