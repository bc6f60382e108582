// The rule tree that comes with the program.
#pragma once

#include <string>

namespace pkgvet::cli {

// Its configuration file, found from where the program itself stands: the build tree is laid out as
// an installation is.
std::string defaultRules();

}  // namespace pkgvet::cli
