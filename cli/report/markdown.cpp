// Writes Markdown.
#include "cli/report/markdown.h"

#include "cli/base/escape.h"
#include "cli/base/text.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kFence = "```\n";
// ASCII punctuation that can mark something up, "@" and "#" among them, which services make
// mentions and references of.
constexpr std::string_view kActive = "\\`*_{}[]()<>#+-!|~&@:";

void addParagraph(std::string_view label, std::string_view text, std::size_t columns,
                  std::string* markdown) {
    const std::string paragraph = "**" + std::string(label) + ".** " + std::string(text);
    markdown->append(markdown->empty() ? "" : "\n");
    for (const std::string& line : wrapped(paragraph, columns)) {
        markdown->append(line).append("\n");
    }
}

}  // namespace

std::string markdownOf(const Entry& entry, std::size_t columns) {
    std::string markdown;
    addParagraph("Rule", entry.demand, columns, &markdown);
    addParagraph("Why", entry.why, columns, &markdown);
    addParagraph("What to do", entry.fix, columns, &markdown);
    if (!entry.example.empty()) {
        markdown.append("\n").append(kFence).append(entry.example).append(kFence);
    }
    return markdown;
}

std::string markdownText(std::string_view text) {
    std::string result;
    for (const char c : printable(text)) {
        result.append(kActive.find(c) == std::string_view::npos ? 0 : 1, '\\').append(1, c);
    }
    return result;
}

}  // namespace pkgvet::cli
