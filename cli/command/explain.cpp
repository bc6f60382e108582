// Shows entries of the catalogue.
#include "cli/command/explain.h"

#include <iostream>
#include <sstream>

#include "cli/base/escape.h"
#include "cli/base/terminal.h"
#include "cli/base/text.h"
#include "cli/command/exit_status.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kProgram = "pkgvet: ";
constexpr std::string_view kPlaceholder = "...";
constexpr std::string_view kIndent = "    ";
constexpr std::size_t kColumns = 80;

constexpr std::string_view kBold = "\033[1m";
constexpr std::string_view kReset = "\033[m";

// What is written, and whether its headings stand out.
struct Paper {
    std::ostream& stream;
    bool color;
};

void writeHeading(std::string_view heading, const Paper& paper) {
    if (paper.color) {
        paper.stream << kBold << heading << kReset << '\n';
    } else {
        paper.stream << heading << '\n';
    }
}

void writeParagraph(std::string_view heading, std::string_view text, const Paper& paper) {
    paper.stream << '\n';
    writeHeading(heading, paper);
    for (const std::string& line : wrapped(text, kColumns - kIndent.size())) {
        paper.stream << kIndent << line << '\n';
    }
}

void writeExample(std::string_view example, const Paper& paper) {
    paper.stream << '\n';
    writeHeading("Example", paper);
    std::istringstream lines{std::string(example)};
    for (std::string line; std::getline(lines, line);) {
        paper.stream << (line.empty() ? std::string_view() : kIndent) << line << '\n';
    }
}

template <typename Ids>
std::string joined(const Ids& ids) {
    std::string result;
    for (const auto& id : ids) {
        result.append(result.empty() ? "" : ", ").append(id);
    }
    return result;
}

bool areKnown(const std::vector<std::string>& ids) {
    bool allKnown = true;
    for (const std::string& id : ids) {
        if (findEntry(id) == nullptr) {
            allKnown = false;
            std::cerr << kProgram << "no finding has the id \"" << printable(id)
                      << "\"; the nearest are " << joined(nearestIds(id)) << '\n';
        }
    }
    return allKnown;
}

void writeAll(const Paper& paper) {
    std::string_view separator;
    for (const Chapter& chapter : chapters()) {
        paper.stream << separator;
        writeHeading(chapter.title, paper);
        paper.stream << std::string(chapter.title.size(), '=') << '\n';
        separator = "\n\n";
        for (const Entry& entry : chapter.entries) {
            paper.stream << '\n';
            writeEntry(entry, paper.color, paper.stream);
        }
    }
}

void writeChosen(const std::vector<std::string>& ids, const Paper& paper) {
    std::string_view separator;
    for (const std::string& id : ids) {
        paper.stream << separator;
        separator = "\n";
        writeEntry(*findEntry(id), paper.color, paper.stream);
    }
}

}  // namespace

int explain(const ExplainOptions& options) {
    if (!areKnown(options.ids)) {
        return kUsageError;
    }
    const Paper paper = {std::cout, wantsColor(options.color)};
    if (options.ids.empty()) {
        writeAll(paper);
    } else {
        writeChosen(options.ids, paper);
    }
    if (!std::cout.flush()) {
        std::cerr << kProgram << "cannot write to standard output\n";
        return kNotJudged;
    }
    return kAccepted;
}

void writeEntry(const Entry& entry, bool color, std::ostream& stream) {
    const Paper paper = {stream, color};
    writeHeading(std::string(entry.id).append(" (").append(severityName(entry.severity)) + ")",
                 paper);
    stream << entry.title << '\n';
    writeParagraph("Rule", entry.demand, paper);
    writeParagraph("Why", entry.why, paper);
    writeParagraph("What to do", entry.fix, paper);
    if (!entry.example.empty()) {
        writeExample(entry.example, paper);
    }
    if (!entry.related().empty()) {
        writeParagraph("See also", joined(entry.related()), paper);
    }
}

std::string messageForm(const Entry& entry) {
    std::string text;
    for (const Piece& piece : entry.pieces()) {
        text += piece.kind == Piece::Kind::Words ? piece.words : kPlaceholder;
    }
    return text;
}

}  // namespace pkgvet::cli
