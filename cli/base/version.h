// What the program is made of.
#pragma once

#include <string>

namespace pkgvet::cli {

// The version of the program and those of the libraries in use, a line for each: what is loaded
// now, which is not always what the program was built with.
std::string versionText();

}  // namespace pkgvet::cli
