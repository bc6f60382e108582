// Shows entries of the catalogue.
#include "cli/explain.h"

#include <algorithm>
#include <iostream>

#include "cli/exit_status.h"
#include "cli/printable.h"
#include "cli/wrapped_text.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kProgram = "pkgvet: ";
constexpr std::string_view kPlaceholder = "...";
constexpr std::string_view kIndent = "    ";
constexpr std::size_t kColumns = 80;

void writeParagraph(std::string_view heading, std::string_view text, std::ostream& stream) {
    stream << '\n' << heading << '\n' << wrapped(text, kIndent, kColumns);
}

void writeExample(std::string_view example, std::ostream& stream) {
    stream << "\nExample\n";
    for (const std::string_view line : linesOf(example)) {
        stream << (line.empty() ? std::string_view() : kIndent) << line << '\n';
    }
}

std::string joined(std::span<const std::string_view> ids) {
    std::string result;
    for (const std::string_view id : ids) {
        result.append(result.empty() ? "" : ", ").append(id);
    }
    return result;
}

void complainAbout(const std::string& id) {
    std::cerr << kProgram << "no finding is called \"" << printable(id) << "\"; the nearest are ";
    const std::vector<std::string> nearest = nearestIds(id);
    const std::vector<std::string_view> views(nearest.begin(), nearest.end());
    std::cerr << joined(views) << '\n';
}

void writeAll(std::ostream& stream) {
    std::string_view separator;
    for (const Chapter& chapter : chapters()) {
        stream << separator << chapter.title << '\n'
               << std::string(chapter.title.size(), '=') << '\n';
        separator = "\n\n";
        for (const Entry& entry : chapter.entries) {
            stream << '\n';
            writeEntry(entry, stream);
        }
    }
}

void writeChosen(const std::vector<std::string>& ids, std::ostream& stream) {
    std::string_view separator;
    for (const std::string& id : ids) {
        stream << separator;
        separator = "\n";
        writeEntry(*findEntry(id), stream);
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

void writeEntry(const Entry& entry, std::ostream& stream) {
    stream << entry.id << " (" << severityName(entry.severity) << ")\n"
           << wrapped(entry.title, "", kColumns);
    writeParagraph("Rule", entry.demand, stream);
    writeParagraph("Why", entry.why, stream);
    writeParagraph("What to do", entry.fix, stream);
    if (!entry.example.empty()) {
        writeExample(entry.example, stream);
    }
    if (!entry.related().empty()) {
        writeParagraph("See also", joined(entry.related()), stream);
    }
}

int explain(const std::vector<std::string>& ids) {
    bool allKnown = true;
    for (const std::string& id : ids) {
        if (findEntry(id) == nullptr) {
            complainAbout(id);
            allKnown = false;
        }
    }
    if (!allKnown) {
        return kUsageError;
    }
    if (ids.empty()) {
        writeAll(std::cout);
    } else {
        writeChosen(ids, std::cout);
    }
    if (!std::cout.flush()) {
        std::cerr << kProgram << "cannot write to standard output\n";
        return kNotJudged;
    }
    return kAccepted;
}

}  // namespace pkgvet::cli
