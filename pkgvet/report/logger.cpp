// Composes the lines that report findings.
#include "pkgvet/report/logger.h"

#include <array>
#include <iostream>

#include "pkgvet/report/log_line.h"

namespace {

// Indexed by the numeric LogLevel.
constexpr std::array<std::string_view, 4> kColors = {"\033[33m", "\033[31m", "\033[31m", "\033[1m"};
constexpr std::string_view kColorReset = "\033[m";

bool colorEnabled = false;

// Unformatted output, so that a field width left on the stream pads nothing.
void write(std::string_view text) {
    std::cerr.write(text.data(), static_cast<std::streamsize>(text.size()));
}

}  // namespace

void Logger::log(LogLevel level, std::initializer_list<std::string_view> pieces) {
    pkgvet::writeLogLine(level, {pieces.begin(), pieces.size()});
}

void Logger::enableColor(bool enable) {
    colorEnabled = enable;
}

namespace pkgvet {

void writeLogLine(LogLevel level, std::span<const std::string_view> pieces) {
    const auto index = static_cast<unsigned>(level);
    if (index >= kLogLabels.size()) {
        return;
    }
    if (colorEnabled) {
        write(kColors[index]);
        write(kLogLabels[index]);
        write(kColorReset);
    } else {
        write(kLogLabels[index]);
    }
    for (const std::string_view piece : pieces) {
        write(piece);
    }
    std::cerr << std::endl;
}

}  // namespace pkgvet
