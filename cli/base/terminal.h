// Whether output is coloured.
#pragma once

#include "cli/command/options.h"

namespace pkgvet::cli {

// What the mode means for standard output here: colour follows the terminal and NO_COLOR unless the
// user decides.
bool wantsColor(ColorMode mode);

}  // namespace pkgvet::cli
