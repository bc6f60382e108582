// Finds the word of a command line that no table has.
#include "cli/command/command_line_error.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "cli/base/escape.h"
#include "cli/base/nearest.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kEndOfOptions = "--";
constexpr std::string_view kLongOption = "--";
constexpr char kValue = '=';
constexpr const char* kNoCommand = "a command is missing";

// How far a walk over the words has come.
struct Walk {
    const CommandRow* row;  // the command that was named
    std::string unknown;    // what is said of a word that no table has; empty for none
};

bool isOption(std::string_view word) {
    return word.size() > 1 && word.front() == '-';
}

const Option* findOption(const CommandRow& row, std::string_view name) {
    const auto found =
        std::find_if(row.options.begin(), row.options.end(), [name](const Option& option) {
            return std::find(option.names.begin(), option.names.end(), name) != option.names.end();
        });
    return found == row.options.end() ? nullptr : &*found;
}

// How many words an option takes up, 0 for one that row does not have.
std::size_t wordsOfLongOption(const CommandRow& row, std::string_view word) {
    const std::size_t value = word.find(kValue);
    const Option* option = findOption(row, word.substr(0, value));
    if (option == nullptr) {
        return 0;
    }
    return option->argument.empty() || value != std::string_view::npos ? 1 : 2;
}

// Of short options several can stand in one word, of which the last may have its argument there.
std::size_t wordsOfShortOptions(const CommandRow& row, std::string_view word) {
    for (std::size_t i = 1; i < word.size(); ++i) {
        const Option* option = findOption(row, std::string("-") + word[i]);
        if (option == nullptr) {
            return 0;
        }
        if (!option->argument.empty()) {
            return i + 1 == word.size() ? 2 : 1;
        }
    }
    return 1;
}

std::string unknownOption(const CommandRow& row, const std::string& word) {
    std::vector<std::string> names;
    for (const Option& option : row.options) {
        names.insert(names.end(), option.names.begin(), option.names.end());
    }
    const std::string name = word.substr(0, word.find(kValue));
    return "unknown option " + printable(name) + suggestion(name, names);
}

std::string unknownCommand(const CommandRow& row, const std::string& word) {
    std::vector<std::string> names;
    for (const CommandRow& command : row.commands) {
        if (!command.hidden) {
            names.push_back(command.name);
        }
    }
    return "unknown command " + printable(word) + suggestion(word, names);
}

// Up to the first word that no table has.
Walk walk(const CommandRow& table, const std::vector<std::string>& words) {
    const CommandRow* row = &table;
    for (std::size_t i = 0; i < words.size() && words[i] != kEndOfOptions;) {
        const std::string& word = words[i];
        if (isOption(word)) {
            const std::size_t taken = word.starts_with(kLongOption)
                                          ? wordsOfLongOption(*row, word)
                                          : wordsOfShortOptions(*row, word);
            if (taken == 0) {
                return {row, unknownOption(*row, word)};
            }
            i += taken;
            continue;
        }
        const CommandRow* command = findCommand(*row, word);
        if (command == nullptr && !row->commands.empty()) {
            return {row, unknownCommand(*row, word)};
        }
        row = command == nullptr ? row : command;
        ++i;
    }
    return {row, std::string()};
}

}  // namespace

std::string commandLineError(const CommandRow& table, const std::vector<std::string>& words,
                             const std::string& cause) {
    const auto [row, unknown] = walk(table, words);
    const std::string what = !unknown.empty()         ? unknown
                             : !row->commands.empty() ? kNoCommand
                                                      : printable(cause);
    return what.ends_with('?') ? what : what + "; see " + row->path + " --help";
}

}  // namespace pkgvet::cli
