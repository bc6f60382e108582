// Breaks prose into lines.
#include "cli/wrapped_text.h"

#include <algorithm>

namespace pkgvet::cli {

namespace {

// The parts of a text between separators.
std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

}  // namespace

std::string wrapped(std::string_view text, std::string_view indent, std::size_t columns) {
    std::string result;
    std::size_t used = 0;
    for (const std::string_view word : split(text, ' ')) {
        if (used > 0 && used + 1 + word.size() <= columns) {
            result.append(" ").append(word);
            used += 1 + word.size();
            continue;
        }
        result.append(used > 0 ? "\n" : "").append(indent).append(word);
        used = indent.size() + word.size();
    }
    return result.append(used > 0 ? "\n" : "");
}

std::vector<std::string_view> linesOf(std::string_view text) {
    return split(text, '\n');
}

}  // namespace pkgvet::cli
