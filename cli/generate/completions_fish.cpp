// The script for fish.
#include <ostream>

#include "cli/base/text.h"
#include "cli/generate/completions.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kStart = R"(# fish completion for pkgvet, made from its table of options.
function __pkgvet_command
    set -l command pkgvet
    for word in (commandline -opc)[2..-1]
        switch "$command $word"
)";
constexpr const char* kEnd = R"(        end
    end
    echo $command
end
function __pkgvet_at
    test (__pkgvet_command) = "$argv"
end
complete -c pkgvet -f
)";

std::string quoted(const std::string& text) {
    std::string result(1, '\'');
    for (const char c : text) {
        if (c == '\'' || c == '\\') {
            result.push_back('\\');
        }
        result.push_back(c);
    }
    return result + "'";
}

// -x: an argument that is not a file; -r -F: one that is.
void writeOption(const Option& option, std::ostream& stream) {
    for (const std::string& name : option.names) {
        const bool isLong = name.starts_with("--");
        stream << (isLong ? " -l " : " -s ") << name.substr(isLong ? 2 : 1);
    }
    if (!option.words.empty()) {
        stream << " -x -a " << quoted(joined(option.words, " "));
    } else if (!option.argument.empty()) {
        stream << (option.takesFile ? " -r -F" : " -x");
    }
    stream << " -d " << quoted(option.description) << '\n';
}

void writeCommand(const CommandRow& command, std::ostream& stream) {
    const std::string start = "complete -c pkgvet -n '__pkgvet_at " + command.path + "'";
    if (takesFiles(command)) {
        stream << start << " -F\n";
    }
    if (!operandWords(command).empty()) {
        stream << start << " -a " << quoted(joined(operandWords(command), " ")) << '\n';
    }
    for (const CommandRow& below : command.commands) {
        stream << start << " -a " << below.name << " -d " << quoted(below.description) << '\n';
    }
    for (const Option& option : command.options) {
        stream << start;
        writeOption(option, stream);
    }
}

}  // namespace

void writeFishCompletion(const CommandRow& table, std::ostream& stream) {
    const std::vector<CommandRow> commands = visibleCommands(table);
    stream << kStart;
    for (const CommandRow& command : commands) {
        if (command.path != table.path) {
            stream << "            case '" << command.path << "'\n                set command '"
                   << command.path << "'\n";
        }
    }
    stream << kEnd;
    for (const CommandRow& command : commands) {
        writeCommand(command, stream);
    }
}

}  // namespace pkgvet::cli
