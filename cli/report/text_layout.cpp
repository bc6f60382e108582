// Sets text in columns.
#include "cli/report/text_layout.h"

#include <glib.h>

#include <array>

namespace pkgvet::cli {

namespace {

// Indexed by Severity.
constexpr std::array<std::string_view, 4> kSeverityColors = {"\033[1m", "\033[33m", "\033[31m",
                                                             "\033[1;31m"};
constexpr std::string_view kReset = "\033[m";

std::size_t widthOf(gunichar c) {
    if (g_unichar_iszerowidth(c) != FALSE) {
        return 0;
    }
    return g_unichar_iswide(c) != FALSE ? 2 : 1;
}

std::string fill(std::string_view text, std::size_t width) {
    const std::size_t taken = displayWidth(text);
    return std::string(width > taken ? width - taken : 0, ' ');
}

}  // namespace

std::string_view severityColor(Severity severity) {
    return kSeverityColors[static_cast<std::size_t>(severity)];
}

std::string painted(std::string_view text, std::string_view color, bool enabled) {
    if (!enabled) {
        return std::string(text);
    }
    return std::string(color) + std::string(text) + std::string(kReset);
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    const char* end = text.data() + text.size();
    for (const char* p = text.data(); p < end; p = g_utf8_next_char(p)) {
        width += widthOf(g_utf8_get_char(p));
    }
    return width;
}

std::string paddedRight(std::string_view text, std::size_t width) {
    return std::string(text) + fill(text, width);
}

std::string paddedLeft(std::string_view text, std::size_t width) {
    return fill(text, width) + std::string(text);
}

}  // namespace pkgvet::cli
