// What goes to a terminal: colour, and lines for the user beside a command's own output.
#pragma once

#include <string>
#include <string_view>

#include "cli/base/option.h"

namespace pkgvet::cli {

enum class ColorMode { Auto, Always, Never };

// The option --color.
Option colorOption(ColorMode* mode);

// What the mode means for standard output here: colour follows the terminal and NO_COLOR unless the
// user decides.
bool wantsColor(ColorMode mode);

// The columns of the terminal that standard output is, at most as many as are good to read; 0 when
// it is not a terminal.
std::size_t outputColumns();

inline constexpr std::string_view kBold = "\033[1m";
inline constexpr std::string_view kRed = "\033[31m";
inline constexpr std::string_view kBoldRed = "\033[1;31m";
inline constexpr std::string_view kGreen = "\033[32m";
inline constexpr std::string_view kYellow = "\033[33m";

// text in color, or as it is.
std::string painted(std::string_view text, std::string_view color, bool enabled);

// Writes text to standard error as a line of the program's. It is fit for a terminal.
void complain(std::string_view text);

}  // namespace pkgvet::cli
