// Walks the command line.
#include "cli/generate/command_table.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <string_view>

namespace pkgvet::cli {

namespace {

constexpr char kBetweenWords = '|';
// By what names arguments and operands are files.
constexpr std::array<std::string_view, 2> kFiles = {"PATH", "FILE"};
constexpr const char* kIdOperand = "ID";

OptionRow describeOption(const CLI::Option& option) {
    OptionRow row;
    for (const std::string& name : option.get_snames()) {
        row.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        row.names.push_back("--" + name);
    }
    row.description = option.get_description();
    row.mayRepeat = option.get_expected_max() > 1;
    if (option.get_items_expected_max() > 0) {
        row.argument = option.get_type_name();
        row.takesFile = std::any_of(kFiles.begin(), kFiles.end(), [&row](std::string_view file) {
            return row.argument.ends_with(file);  // as that of "FORMAT:PATH" does
        });
    }
    if (row.argument.find(kBetweenWords) != std::string::npos) {
        row.words = CLI::detail::split(row.argument, kBetweenWords);
    }
    return row;
}

bool isFileOperand(const CLI::Option& option) {
    const std::string name = option.get_name(true);
    return std::find(kFiles.begin(), kFiles.end(), name) != kFiles.end();
}

CommandRow describeCommand(const CLI::App& app, const std::string& parent,
                           const std::vector<std::string>& ids) {
    CommandRow row;
    row.name = app.get_name();
    row.path = parent.empty() ? row.name : parent + " " + row.name;
    row.description = app.get_description();
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_positional()) {
            row.takesFiles = row.takesFiles || isFileOperand(*option);
            row.operands = option->get_name(true) == kIdOperand ? ids : row.operands;
        } else if (!option->get_group().empty()) {
            row.options.push_back(describeOption(*option));
        }
    }
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (!command->get_group().empty()) {
            row.commands.push_back(describeCommand(*command, row.path, ids));
        }
    }
    return row;
}

}  // namespace

CommandRow describeCommands(const CLI::App& app, const std::vector<std::string>& ids) {
    return describeCommand(app, std::string(), ids);
}

std::vector<CommandRow> allCommands(const CommandRow& table) {
    std::vector<CommandRow> commands = {table};
    for (const CommandRow& command : table.commands) {
        const std::vector<CommandRow> below = allCommands(command);
        commands.insert(commands.end(), below.begin(), below.end());
    }
    return commands;
}

std::string joined(const std::vector<std::string>& words) {
    return CLI::detail::join(words, " ");
}

}  // namespace pkgvet::cli
