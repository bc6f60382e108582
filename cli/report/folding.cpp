// Breaks text into lines.
#include "cli/report/folding.h"

#include <glib.h>

#include <algorithm>

#include "cli/base/text.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kIndent = "  ";
// Text that had less room than this beside its start stands below it.
constexpr std::size_t kLeastRoom = 24;
constexpr std::size_t kIndentBelow = 6;

// Colour is an escape sequence up to its "m".
constexpr char kColorStart = '\033';
constexpr char kColorEnd = 'm';

std::size_t widthOf(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const std::size_t color = text.find(kColorStart);
        plain += text.substr(0, color);
        const std::size_t end = text.find(kColorEnd, std::min(color, text.size()));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return displayWidth(plain);
}

// text parted at its spaces, or only at those that stand in no parentheses.
std::vector<std::string_view> parted(std::string_view text, bool keepsPhrases) {
    std::vector<std::string_view> parts;
    std::size_t depth = 0;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        depth += text[i] == '(' ? 1 : 0;
        depth -= text[i] == ')' && depth > 0 ? 1 : 0;
        if (text[i] == ' ' && (depth == 0 || !keepsPhrases)) {
            parts.push_back(text.substr(begin, i - begin));
            begin = i + 1;
        }
    }
    parts.push_back(text.substr(begin));
    return parts;
}

void addByCharacters(std::string_view word, std::size_t columns, std::vector<std::string>* lines) {
    while (!word.empty()) {
        const auto size = static_cast<std::size_t>(g_utf8_skip[static_cast<guchar>(word.front())]);
        const std::string_view character = word.substr(0, size);
        if (!lines->back().empty() && widthOf(lines->back()) + widthOf(character) > columns) {
            lines->emplace_back();
        }
        lines->back() += character;
        word.remove_prefix(character.size());
    }
}

// A path is broken behind its slashes, as far as there are any.
void addBroken(std::string_view word, std::size_t columns, std::vector<std::string>* lines) {
    lines->emplace_back();
    while (!word.empty()) {
        const std::size_t slash = word.find('/', 1);
        const std::string_view piece =
            word.substr(0, slash == std::string_view::npos ? slash : slash + 1);
        if (widthOf(lines->back()) + widthOf(piece) <= columns) {
            lines->back() += piece;
        } else {
            if (!lines->back().empty()) {
                lines->emplace_back();
            }
            addByCharacters(piece, columns, lines);
        }
        word.remove_prefix(piece.size());
    }
}

void add(std::string_view part, std::size_t columns, std::vector<std::string>* lines) {
    if (!lines->empty() && widthOf(lines->back()) + 1 + widthOf(part) <= columns) {
        lines->back().append(" ").append(part);
    } else if (widthOf(part) <= columns) {
        lines->emplace_back(part);
    } else if (part.find(' ') != std::string_view::npos) {
        for (const std::string_view word : parted(part, false)) {
            add(word, columns, lines);
        }
    } else {
        addBroken(part, columns, lines);
    }
}

}  // namespace

std::vector<std::string> folded(std::string_view text, std::size_t columns) {
    if (columns == 0 || widthOf(text) <= columns) {
        return {std::string(text)};
    }
    std::vector<std::string> lines;
    for (const std::string_view part : parted(text, true)) {
        add(part, columns, &lines);
    }
    return lines;
}

void writeFolded(std::string_view text, std::size_t columns, std::ostream& stream) {
    if (columns == 0 || widthOf(text) <= columns) {
        stream << text << '\n';
        return;
    }
    std::string_view indent;
    for (const std::string& line : folded(text, columns - kIndent.size())) {
        stream << indent << line << '\n';
        indent = kIndent;
    }
}

void writeHanging(std::string_view start, std::size_t width, std::string_view text,
                  std::size_t columns, std::ostream& stream) {
    const bool isBeside = columns == 0 || width + kLeastRoom <= columns;
    const std::size_t indent = isBeside ? width : kIndentBelow;
    const std::string margin(indent, ' ');
    const std::string_view words = start.substr(0, start.find_last_not_of(' ') + 1);
    if (isBeside) {
        stream << start;
    } else if (!words.empty()) {
        stream << words << '\n';
    }
    std::string_view ahead = isBeside ? std::string_view() : std::string_view(margin);
    for (const std::string& line : folded(text, columns == 0 ? 0 : columns - indent)) {
        stream << ahead << line << '\n';
        ahead = margin;
    }
}

}  // namespace pkgvet::cli
