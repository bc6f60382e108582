// The versions of the program and of the libraries it runs with.
#pragma once

#include <string>

namespace pkgvet::cli {

// The program's own version, such as "1.0.0".
std::string programVersion();

// Where the project is at home, a URL that ends in a slash.
std::string programHomepage();

// The version of the program and those of the libraries in use, a line for each: what is loaded
// now, which is not always what the program was built with.
std::string versionText();

}  // namespace pkgvet::cli
