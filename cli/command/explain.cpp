// Shows entries of the catalogue.
#include "cli/command/explain.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/base/escape.h"
#include "cli/base/exit_status.h"
#include "cli/base/terminal.h"
#include "cli/base/text.h"
#include "cli/report/format_json.h"

namespace pkgvet::cli {

namespace {

constexpr Words<Format, 2> kFormats = {{{"text", Format::Text}, {"json", Format::Json}}};

// Raised when a reader of the former form would go wrong; new keys alone do not raise it.
constexpr int kSchemaVersion = 1;

constexpr std::string_view kIndent = "    ";
constexpr std::size_t kColumns = 80;
constexpr std::string_view kSeparator = ", ";

// Where entries are written, and whether their headings stand out.
struct EntryStream {
    std::ostream& stream;
    bool color;
};

void writeHeading(std::string_view heading, const EntryStream& out) {
    out.stream << painted(heading, kBold, out.color) << '\n';
}

void writeParagraph(std::string_view heading, std::string_view text, const EntryStream& out) {
    out.stream << '\n';
    writeHeading(heading, out);
    for (const std::string& line : wrapped(text, kColumns - kIndent.size())) {
        out.stream << kIndent << line << '\n';
    }
}

void writeExample(std::string_view example, const EntryStream& out) {
    out.stream << '\n';
    writeHeading("Example", out);
    std::istringstream lines{std::string(example)};
    for (std::string line; std::getline(lines, line);) {
        out.stream << (line.empty() ? std::string_view() : kIndent) << line << '\n';
    }
}

void writeAll(const EntryStream& out) {
    std::string_view separator;
    for (const Chapter& chapter : chapters()) {
        out.stream << separator;
        writeHeading(chapter.title, out);
        out.stream << std::string(chapter.title.size(), '=') << '\n';
        separator = "\n\n";
        for (const Entry& entry : chapter.entries) {
            out.stream << '\n';
            writeEntry(entry, out.color, out.stream);
        }
    }
}

void writeNamed(const std::vector<std::string>& ids, const EntryStream& out) {
    std::string_view separator;
    for (const std::string& id : ids) {
        out.stream << separator;
        separator = "\n";
        writeEntry(*findEntry(id), out.color, out.stream);
    }
}

nlohmann::ordered_json entryJson(const Entry& entry) {
    return {{"id", entry.id},
            {"severity", severityName(entry.severity)},
            {"never_excused", entry.grave},
            {"chapter", chapterOf(entry).title},
            {"title", entry.title},
            {"rule", entry.demand},
            {"why", entry.why},
            {"fix", entry.fix},
            {"example", entry.example},
            {"related", entry.related()},
            {"help_uri", helpUri(entry.id)}};
}

void writeJson(const std::vector<std::string>& ids, std::ostream& stream) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const std::string& id : ids) {
        list.push_back(entryJson(*findEntry(id)));
    }
    for (const Entry* entry : ids.empty() ? entries() : std::vector<const Entry*>()) {
        list.push_back(entryJson(*entry));
    }
    stream << jsonText({{"schema_version", kSchemaVersion}, {"rules", std::move(list)}},
                       kJsonIndent)
           << '\n';
}

// The ids are offered to shells; a wrong one is answered by the command itself, with the nearest.
Operand idOperand(ExplainOptions* options) {
    Operand operand;
    operand.name = "ID";
    operand.description = "Rules to explain [all of them]";
    operand.set = appendTo(&options->ids);
    for (const Entry* entry : entries()) {
        operand.words.emplace_back(entry->id);
    }
    return operand;
}

}  // namespace

CommandRow explainCommand(ExplainOptions* options) {
    CommandRow row;
    row.name = "explain";
    row.description = "Say what a rule demands, why, and how to put a finding right";
    row.options = {
        choiceOption("--format", kFormats, &options->format, "Format of the output [text]"),
        colorOption(&options->color)};
    row.operand = idOperand(options);
    return row;
}

bool areKnownIds(const std::vector<std::string>& ids) {
    bool allKnown = true;
    for (const std::string& id : ids) {
        if (findEntry(id) == nullptr) {
            allKnown = false;
            complain("no finding has the id \"" + printable(id) + "\"; the nearest are " +
                     joined(nearestIds(id), kSeparator));
        }
    }
    return allKnown;
}

int explain(const ExplainOptions& options) {
    if (!areKnownIds(options.ids)) {
        return kUsageError;
    }
    const EntryStream out = {std::cout, wantsColor(options.color)};
    if (options.format == Format::Json) {
        writeJson(options.ids, std::cout);
    } else if (options.ids.empty()) {
        writeAll(out);
    } else {
        writeNamed(options.ids, out);
    }
    return statusAfterOutput(kAccepted);
}

void writeEntry(const Entry& entry, bool color, std::ostream& stream) {
    const EntryStream out = {stream, color};
    writeHeading(std::string(entry.id).append(" (").append(severityName(entry.severity)) + ")",
                 out);
    stream << entry.title << '\n';
    writeParagraph("Rule", entry.demand, out);
    writeParagraph("Why", entry.why, out);
    writeParagraph("What to do", entry.fix, out);
    if (!entry.example.empty()) {
        writeExample(entry.example, out);
    }
    if (!entry.related().empty()) {
        writeParagraph("See also", joined(entry.related(), kSeparator), out);
    }
}

}  // namespace pkgvet::cli
