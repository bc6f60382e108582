// How a finding becomes a line, for what writes lines and for what reads them back.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "pkgvet/report/logger.h"

namespace pkgvet {

// What stands in front of a line of each level, indexed by the numeric LogLevel. The tabs align the
// text that follows.
inline constexpr std::array<std::string_view, 4> kLogLabels = {
    "(WARNING)\t",
    "(ERROR)\t\t",
    "(CRITICAL)\t",
    "(INFO)\t\t",
};

// Logger::log for pieces whose number is known only when the program runs.
void writeLogLine(LogLevel level, std::span<const std::string_view> pieces);

}  // namespace pkgvet
