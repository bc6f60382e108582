// The guard in the place of cpio, a program that is installed with this one.
#pragma once

#include <string>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

struct GuardProgram {
    std::string directory;  // where it lies under the name of cpio, with nothing beside it
    Descriptor program;     // open where judges perhaps cannot reach the directory
    // Its bytes, for judges that cannot reach the directory; empty when they can.
    std::string image;

    bool isCopied() const { return !image.empty(); }
};

// Finds the guard from where this program lies.
GuardProgram findGuard();

// Reads the image where judges need it, which is known once this process is their user.
// isTmpPrivate says whether they have a /tmp of their own, which hides what lies in the other one.
void readNeededImage(GuardProgram* guard, bool isTmpPrivate);

// Puts a copy into a directory, which is made where it is not there. Throws std::system_error.
void copyGuard(const GuardProgram& guard, const std::string& directory);

// Throws std::system_error when the guard in the directory cannot be run.
void checkGuard(const std::string& directory);

}  // namespace pkgvet::cli
