// Decides on colour.
#include "cli/base/terminal.h"

#include <stdlib.h>
#include <unistd.h>

#include <string_view>

namespace pkgvet::cli {

namespace {

constexpr std::string_view kDumbTerminal = "dumb";

}  // namespace

bool wantsColor(ColorMode mode) {
    if (mode != ColorMode::Auto) {
        return mode == ColorMode::Always;
    }
    const char* noColor = getenv("NO_COLOR");
    const char* terminal = getenv("TERM");
    const bool isRefused = noColor != nullptr && *noColor != '\0';
    const bool isDumb = terminal != nullptr && std::string_view(terminal) == kDumbTerminal;
    return !isRefused && !isDumb && isatty(STDOUT_FILENO) == 1;
}

}  // namespace pkgvet::cli
