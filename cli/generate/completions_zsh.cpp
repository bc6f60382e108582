// The script for zsh.
#include <algorithm>
#include <ostream>
#include <string_view>

#include "cli/base/text.h"
#include "cli/generate/completions.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kSpecial = "[]:\\";

// For the inside of single quotes in an argument of _arguments.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '\'') {
            result += "'\\''";
            continue;
        }
        if (kSpecial.find(c) != std::string_view::npos) {
            result.push_back('\\');
        }
        result.push_back(c);
    }
    return result;
}

std::string functionName(const CommandRow& command) {
    std::string name = "_" + command.path;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

// ":MESSAGE:ACTION", which is nothing for a flag.
std::string argumentOf(const Option& option) {
    if (option.argument.empty()) {
        return std::string();
    }
    std::string text(1, ':');
    if (option.words.empty()) {
        return text.append(escaped(option.argument)).append(option.takesFile ? ":_files" : ": ");
    }
    return text.append("word:(").append(joined(option.words, " ")).append(")");
}

// A name with the sign for how its argument is attached.
std::string spelling(const Option& option, const std::string& name) {
    if (option.argument.empty()) {
        return name;
    }
    return name + (name.starts_with("--") ? "=" : "+");
}

// What no longer applies once the option is given.
std::string exclusionsOf(const Option& option) {
    if (option.mayRepeat) {
        return "*";
    }
    return std::string(1, '(').append(joined(option.names, " ")).append(")");
}

void writeOption(const Option& option, std::ostream& stream) {
    for (const std::string& name : option.names) {
        stream << " \\\n        '" << exclusionsOf(option) << spelling(option, name) << '['
               << escaped(option.description) << ']' << argumentOf(option) << '\'';
    }
}

// The commands below this one, each with a function of its own.
void writeDispatch(const CommandRow& command, std::ostream& stream) {
    stream << " \\\n        '1:command:((";
    const char* separator = "";
    for (const CommandRow& below : command.commands) {
        stream << separator << below.name << "\\:\"" << escaped(below.description) << '"';
        separator = " ";
    }
    stream << "))' \\\n        '*::argument:->argument'\n"
           << "    [[ $state == argument ]] || return\n    case $words[1] in\n";
    for (const CommandRow& below : command.commands) {
        stream << "        " << below.name << ") " << functionName(below) << " ;;\n";
    }
    stream << "    esac\n";
}

void writeFunction(const CommandRow& command, std::ostream& stream) {
    stream << functionName(command) << "() {\n    local curcontext=\"$curcontext\" state line\n"
           << "    typeset -A opt_args\n    _arguments -C -s";
    for (const Option& option : command.options) {
        writeOption(option, stream);
    }
    if (!command.commands.empty()) {
        writeDispatch(command, stream);
    } else if (!operandWords(command).empty()) {
        stream << " \\\n        '*:operand:(" << joined(operandWords(command), " ") << ")'\n";
    } else {
        stream << (takesFiles(command) ? " \\\n        '*:file:_files'\n" : "\n");
    }
    stream << "}\n\n";
}

}  // namespace

void writeZshCompletion(const CommandRow& table, std::ostream& stream) {
    stream << "#compdef pkgvet\n# zsh completion for pkgvet, made from its table of options.\n\n";
    for (const CommandRow& command : visibleCommands(table)) {
        writeFunction(command, stream);
    }
    stream << functionName(table) << " \"$@\"\n";
}

}  // namespace pkgvet::cli
