// A package's configuration of the platform's file integrity service.
#pragma once

#include <string>
#include <vector>

namespace pkgvet {

enum class SealwatchdResult {
    Valid,        // every file that is to be watched is one of the package
    InvalidJson,  // or no such file, or one that cannot be read
    Mismatch,
};

// Judges the configuration file at file, a path on disk, of a package that installs paths.
//
// It asks no more of the file's shape than json-glib does: a file without a "watch" array watches
// nothing and is valid. An element that is no string names no file and so is a mismatch.
SealwatchdResult checkSealwatchdFile(const std::string& file,
                                     const std::vector<std::string>& paths);

}  // namespace pkgvet
