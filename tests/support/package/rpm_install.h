// What rpm makes of a package on a device.
#pragma once

#include <string>

#include "tests/support/base/temporary_directory.h"

// Whether rpm can install into a directory here, which takes the superuser. Tests are skipped where
// it cannot.
bool canInstall();

struct Installation {
    int status;  // rpm's exit status
    std::string output;
};

// Installs the package into root, an empty directory, without running scripts and without looking
// at what it requires.
Installation install(const std::string& package, const TemporaryDirectory& root);

// The tree below root, a line a path in order: mode, target of a link, size of a file. What rpm
// keeps for itself is left out.
std::string treeBelow(const std::filesystem::path& root);
