// The command line as plain data.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}  // namespace CLI

namespace pkgvet::cli {

struct OptionRow {
    std::vector<std::string> names;  // such as "-q" and "--quiet"
    std::string description;
    std::string argument;            // such as "FILE"; empty for a flag
    std::vector<std::string> words;  // those that the argument can be; empty when it is any text
    bool takesFile = false;
    bool mayRepeat = false;
};

struct CommandRow {
    std::string path;  // such as "pkgvet rules show"
    std::string name;  // its last word
    std::string description;
    std::vector<OptionRow> options;
    std::vector<CommandRow> commands;
    bool takesFiles = false;
    std::vector<std::string> operands;  // the words that it takes, where they are known
};

// What app and its commands take, without what is hidden from users. Operands called ID are ids of
// rules, of which there are those of ids.
CommandRow describeCommands(const CLI::App& app, const std::vector<std::string>& ids);

// table and all commands below it, each before its own.
std::vector<CommandRow> allCommands(const CommandRow& table);

// words with blanks between them.
std::string joined(const std::vector<std::string>& words);

}  // namespace pkgvet::cli
