// Breaks prose into lines and fills columns.
#include "cli/base/text.h"

#include <glib.h>

#include <sstream>

namespace pkgvet::cli {

namespace {

// A combining mark takes no column of its own, and most East Asian characters take two.
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

std::string counted(std::size_t count, std::string_view noun) {
    return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

// Bytes are columns here: all prose that is wrapped is the program's own, in ASCII.
std::vector<std::string> wrapped(std::string_view text, std::size_t width) {
    std::vector<std::string> lines;
    std::istringstream words{std::string(text)};
    for (std::string word; words >> word;) {
        if (lines.empty() || lines.back().size() + 1 + word.size() > width) {
            lines.push_back(word);
        } else {
            lines.back().append(" ").append(word);
        }
    }
    return lines;
}

// Walks by the first byte of each character, which is safe for UTF-8 that printable() has checked.
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
