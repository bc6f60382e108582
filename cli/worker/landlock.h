// Landlock: what a process may do with the files that it can see.
#pragma once

#include <cstdint>
#include <string>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// Whether this kernel has it in a version that packages can be unpacked under.
bool hasLandlock();

// What may be done below a directory, or with a file.
enum class FileAccess {
    Read,     // read files, list directories
    Execute,  // that, and run programs
    Write,    // whatever there is, but for making devices
};

// A set of rules on files. Nothing but what it permits can be done once it is applied, neither by
// this process nor by any that it starts, and no later set gives anything back. Looking at the
// attributes of a file is always possible. Throws std::system_error.
class LandlockRules {
public:
    LandlockRules();

    // Permits access to path, on disk, and what lies below it. A path that does not exist is passed
    // over: machines differ in where their libraries lie.
    void permit(const std::string& path, FileAccess access);
    void apply() const;

private:
    int version_;
    Descriptor rules_;
};

}  // namespace pkgvet::cli
