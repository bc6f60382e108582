// A package's configuration of the platform's file integrity service.
#pragma once

#include <string>
#include <vector>

namespace pkgvet {

enum class SealwatchdResult {
    Valid,        // every file that is to be watched is one of the package
    InvalidJson,  // also a file that is missing or cannot be read
    Mismatch,
};

// Judges the configuration file at file, a path on disk, of a package that installs paths.
//
// The file's shape is what json-glib makes of it: a file without a "watch" array, even an empty
// one, watches nothing and is valid, though json-glib complains on standard error. Throws
// std::logic_error ("basic_string: construction from null is not valid") for an element that is
// not a string, unless an entry ahead of it is a mismatch.
SealwatchdResult checkSealwatchdFile(const std::string& file,
                                     const std::vector<std::string>& paths);

}  // namespace pkgvet
