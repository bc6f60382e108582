// Text set in columns of a terminal.
#pragma once

#include <string>
#include <string_view>

#include "cli/model/model.h"

namespace pkgvet::cli {

inline constexpr std::string_view kGreen = "\033[32m";
inline constexpr std::string_view kRed = "\033[31m";

std::string_view severityColor(Severity severity);

// text in color, or as it is.
std::string painted(std::string_view text, std::string_view color, bool enabled);

// The columns that text takes on a terminal; text went through printable().
std::size_t displayWidth(std::string_view text);

// text filled up with spaces to width, behind it or ahead of it.
std::string paddedRight(std::string_view text, std::size_t width);
std::string paddedLeft(std::string_view text, std::size_t width);

}  // namespace pkgvet::cli
