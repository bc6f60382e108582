// Breaks prose into lines.
#include "cli/base/text.h"

#include <sstream>

namespace pkgvet::cli {

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

}  // namespace pkgvet::cli
