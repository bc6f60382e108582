// The commands of the program as plain data.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/option.h"

namespace pkgvet::cli {

// A command with what it takes. The parser, the completions and the test of the manual page are all
// made from a table of these.
struct CommandRow {
    std::string name = {};
    std::string description = {};
    std::vector<Option> options = {};  // in the order in which help lists them
    std::optional<Operand> operand = std::nullopt;
    std::vector<CommandRow> commands = {};  // when there are any, one of them must be named
    std::string footer = {};                // what help says at its end
    bool hidden = false;                    // from users
    // Called when the line names the command, before any of its options is set. May be null.
    std::function<void()> begin = nullptr;
    // Called when all options are set: the name of what the line lacks, or nothing. May be null.
    std::function<std::string()> missing = nullptr;
    std::string path = {};  // with the commands above it, such as "pkgvet rules show"
};

// The options that every command answers by itself, and the one of the program.
Option helpOption();
Option versionOption();

// table with --help ahead of the options of each command, and with all paths filled in.
CommandRow completed(CommandRow table);

// The command of that name directly below row, null when there is none.
const CommandRow* findCommand(const CommandRow& row, std::string_view name);

// The words that a command takes as operands, where they are known, and whether it takes files.
std::vector<std::string> operandWords(const CommandRow& row);
bool takesFiles(const CommandRow& row);

// table and all commands below it, each before its own, without what is hidden from users.
std::vector<CommandRow> visibleCommands(const CommandRow& table);

}  // namespace pkgvet::cli
