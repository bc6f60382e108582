// Writes the catalogue as a page of the documentation.
#include "cli/generate/findings_page.h"

#include <cctype>

#include "cli/base/text.h"
#include "cli/report/markdown.h"

namespace pkgvet::cli {

namespace {

constexpr std::size_t kColumns = 100;
constexpr std::string_view kPlaceholder = "...";

constexpr std::string_view kIntroduction =
    "# Findings\n"
    "\n"
    "Each finding of `pkgvet` has a permanent id. This page is for developers whose package has "
    "one: it\n"
    "says what the rule demands, why, and what to change in the sources of the package. "
    "`pkgvet explain\n"
    "ID` prints the same. NAME stands for the name of the package.\n"
    "\n"
    "An *error* rejects a package, unless validation is switched off on the device; a *warning* "
    "and an\n"
    "*info* never do. Findings that are marked as grave reject it in any case and cannot be "
    "waived: those\n"
    "on scripts, on set-id bits and on the package's integrity.\n"
    "\n"
    "The page is made from the program's own table, with `./dev docs`.\n";

// The anchor that renderers of Markdown give a heading.
std::string anchorOf(std::string_view title) {
    std::string anchor;
    for (const char character : title) {
        anchor += character == ' '
                      ? '-'
                      : static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    }
    return anchor;
}

std::string linkTo(std::string_view id) {
    return std::string("[").append(id).append("](#").append(id).append(")");
}

void writeContents(std::ostream& stream) {
    for (const Chapter& chapter : chapters()) {
        stream << "\n**[" << chapter.title << "](#" << anchorOf(chapter.title) << ")**\n"
               << "\n| Id | Severity | Finding |\n|---|---|---|\n";
        for (const Entry& entry : chapter.entries) {
            stream << "| " << linkTo(entry.id) << " | " << severityName(entry.severity)
                   << (entry.grave ? ", grave" : "") << " | " << entry.title << " |\n";
        }
    }
}

void writeProse(const std::string& text, std::ostream& stream) {
    stream << '\n';
    for (const std::string& line : wrapped(text, kColumns)) {
        stream << line << '\n';
    }
}

void writeBlock(std::string_view lines, std::ostream& stream) {
    stream << "\n```\n" << lines << "```\n";
}

void writeSection(const Entry& entry, std::ostream& stream) {
    stream << "\n### " << entry.id << "\n";
    writeProse(std::string(entry.title) + ".", stream);
    if (!entry.pieces().empty()) {
        writeBlock(messageForm(entry) + "\n", stream);
    }
    stream << '\n' << markdownOf(entry, kColumns);
    std::string related;
    for (const std::string_view id : entry.related()) {
        related += (related.empty() ? "See also " : ", ") + linkTo(id);
    }
    if (!related.empty()) {
        writeProse(related + ".", stream);
    }
}

}  // namespace

std::string messageForm(const Entry& entry) {
    std::string text;
    for (const Piece& piece : entry.pieces()) {
        text += piece.kind == Piece::Kind::Words ? piece.words : kPlaceholder;
    }
    return text;
}

void writeFindingsPage(std::ostream& stream) {
    stream << kIntroduction;
    writeContents(stream);
    for (const Chapter& chapter : chapters()) {
        stream << "\n## " << chapter.title << '\n';
        for (const Entry& entry : chapter.entries) {
            writeSection(entry, stream);
        }
    }
}

}  // namespace pkgvet::cli
