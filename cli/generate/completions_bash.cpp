// The script for bash.
#include <ostream>

#include "cli/base/text.h"
#include "cli/generate/completions.h"

namespace pkgvet::cli {

namespace {

// Where nothing is offered, bash falls back to files.
constexpr const char* kStart = R"(# bash completion for pkgvet, made from its table of options.
_pkgvet() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=pkgvet word
    # "--option=word" comes in three pieces.
    if [[ $current == = ]]; then
        current=
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for word in "${COMP_WORDS[@]:1:COMP_CWORD - 1}"; do
        case "$command $word" in
)";
constexpr const char* kBetween = R"(        esac
    done
    local offered=
    case "$command" in
)";
constexpr const char* kArguments = R"(    esac
    case "$command $previous" in
)";
constexpr const char* kEnd = R"(    esac
    [[ $current == -* || $offered != -* ]] || return 0
    mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$current")
}
complete -o default -F _pkgvet pkgvet
)";

// What follows an option that takes one of a few words.
void writeArguments(const CommandRow& command, std::ostream& stream) {
    for (const Option& option : command.options) {
        if (option.words.empty()) {
            continue;
        }
        const char* separator = "        ";
        for (const std::string& name : option.names) {
            stream << separator << '"' << command.path << ' ' << name << '"';
            separator = " | ";
        }
        stream << ") offered=\"" << joined(option.words, " ") << "\" ;;\n";
    }
}

// Options; ahead of them commands or operands, where there are any.
std::string offered(const CommandRow& command) {
    std::vector<std::string> words = operandWords(command);
    for (const CommandRow& below : command.commands) {
        words.push_back(below.name);
    }
    for (const Option& option : command.options) {
        words.insert(words.end(), option.names.begin(), option.names.end());
    }
    return joined(words, " ");
}

}  // namespace

void writeBashCompletion(const CommandRow& table, std::ostream& stream) {
    const std::vector<CommandRow> commands = visibleCommands(table);
    stream << kStart;
    for (const CommandRow& command : commands) {
        if (command.path != table.path) {
            stream << "            \"" << command.path << "\") command=\"" << command.path
                   << "\" ;;\n";
        }
    }
    stream << kBetween;
    for (const CommandRow& command : commands) {
        stream << "        \"" << command.path << "\") offered=\"" << offered(command) << "\" ;;\n";
    }
    stream << kArguments;
    for (const CommandRow& command : commands) {
        writeArguments(command, stream);
    }
    stream << kEnd;
}

}  // namespace pkgvet::cli
