// Writes the completion script for the shell that the argument names to standard output. Part of
// the build, and not installed.
#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/catalogue/catalogue.h"
#include "cli/command/options.h"
#include "cli/generate/completions.h"

int main(int argc, char** argv) {
    using namespace pkgvet::cli;
    const std::string_view shell = argc == 2 ? argv[1] : "";
    Options options;
    std::vector<std::string> ids;
    for (const Entry* entry : entries()) {
        ids.emplace_back(entry->id);
    }
    const CommandRow table = describeCommands(*buildApp(&options), ids);
    if (shell == "bash") {
        writeBashCompletion(table, std::cout);
    } else if (shell == "fish") {
        writeFishCompletion(table, std::cout);
    } else if (shell == "zsh") {
        writeZshCompletion(table, std::cout);
    } else {
        std::cerr << "bash, fish or zsh?\n";
        return 2;
    }
    return std::cout.flush() ? 0 : 1;
}
