// Decides on colour and writes to standard error.
#include "cli/base/terminal.h"

#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>

namespace pkgvet::cli {

namespace {

constexpr Words<ColorMode, 3> kColorModes = {{
    {"auto", ColorMode::Auto},
    {"always", ColorMode::Always},
    {"never", ColorMode::Never},
}};

constexpr std::size_t kMostColumns = 100;
constexpr std::size_t kLeastColumns = 40;
constexpr std::size_t kUsualColumns = 80;  // of a terminal that does not know

constexpr std::string_view kProgram = "pkgvet: ";
constexpr std::string_view kDumbTerminal = "dumb";
constexpr std::string_view kReset = "\033[m";

}  // namespace

Option colorOption(ColorMode* mode) {
    return choiceOption("--color", kColorModes, mode, "Colour in the output [auto]");
}

bool wantsColor(ColorMode mode) {
    if (mode != ColorMode::Auto) {
        return mode == ColorMode::Always;
    }
    const char* noColor = getenv("NO_COLOR");
    const char* terminal = getenv("TERM");
    // By convention an empty NO_COLOR is as good as none.
    const bool isRefused = noColor != nullptr && *noColor != '\0';
    const bool isDumb = terminal != nullptr && std::string_view(terminal) == kDumbTerminal;
    return !isRefused && !isDumb && isatty(STDOUT_FILENO) == 1;
}

std::size_t outputColumns() {
    if (isatty(STDOUT_FILENO) != 1) {
        return 0;
    }
    winsize size{};
    const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? std::clamp<std::size_t>(size.ws_col, kLeastColumns, kMostColumns)
                   : kUsualColumns;
}

std::string painted(std::string_view text, std::string_view color, bool enabled) {
    if (!enabled) {
        return std::string(text);
    }
    return std::string(color) + std::string(text) + std::string(kReset);
}

void complain(std::string_view text) {
    std::cerr << kProgram << text << '\n';
}

}  // namespace pkgvet::cli
