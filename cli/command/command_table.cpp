// Completes and walks tables of commands.
#include "cli/command/command_table.h"

#include <algorithm>

namespace pkgvet::cli {

namespace {

void complete(const std::string& above, CommandRow* row) {
    row->path = above + row->name;
    row->options.insert(row->options.begin(), helpOption());
    for (CommandRow& command : row->commands) {
        complete(row->path + " ", &command);
    }
}

// Hidden commands are taken out of the lists of their parents as well, which completions offer.
void collect(const CommandRow& row, std::vector<CommandRow>* rows) {
    if (row.hidden) {
        return;
    }
    rows->push_back(row);
    std::vector<CommandRow>& below = rows->back().commands;
    below.erase(std::remove_if(below.begin(), below.end(),
                               [](const CommandRow& command) { return command.hidden; }),
                below.end());
    for (const CommandRow& command : row.commands) {
        collect(command, rows);
    }
}

}  // namespace

Option helpOption() {
    return {.names = {"-h", "--help"}, .description = "Print this help message and exit"};
}

Option versionOption() {
    return {.names = {"--version"}, .description = "Display program version information and exit"};
}

CommandRow completed(CommandRow table) {
    complete(std::string(), &table);
    return table;
}

const CommandRow* findCommand(const CommandRow& row, std::string_view name) {
    const auto found = std::find_if(row.commands.begin(), row.commands.end(),
                                    [name](const CommandRow& one) { return one.name == name; });
    return found == row.commands.end() ? nullptr : &*found;
}

std::vector<std::string> operandWords(const CommandRow& row) {
    return row.operand ? row.operand->words : std::vector<std::string>();
}

bool takesFiles(const CommandRow& row) {
    return row.operand && row.operand->takesFiles;
}

std::vector<CommandRow> visibleCommands(const CommandRow& table) {
    std::vector<CommandRow> rows;
    collect(table, &rows);
    return rows;
}

}  // namespace pkgvet::cli
