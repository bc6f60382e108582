// Decides on colour.
#include "cli/color.h"

#include <stdlib.h>
#include <unistd.h>

namespace pkgvet::cli {

bool wantsColor(ColorMode mode) {
    if (mode != ColorMode::Auto) {
        return mode == ColorMode::Always;
    }
    const char* noColor = getenv("NO_COLOR");
    return (noColor == nullptr || *noColor == '\0') && isatty(STDOUT_FILENO) == 1;
}

}  // namespace pkgvet::cli
