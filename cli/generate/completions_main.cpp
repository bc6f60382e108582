// Writes the completion script for the shell that the argument names to standard output. Part of
// the build, and not installed.
#include <iostream>
#include <string_view>

#include "cli/command/options.h"
#include "cli/generate/completions.h"

int main(int argc, char** argv) {
    using namespace pkgvet::cli;
    const std::string_view shell = argc == 2 ? argv[1] : "";
    Options options;
    const CommandRow table = commandTable(&options);
    if (shell == "bash") {
        writeBashCompletion(table, std::cout);
    } else if (shell == "fish") {
        writeFishCompletion(table, std::cout);
    } else if (shell == "zsh") {
        writeZshCompletion(table, std::cout);
    } else {
        std::cerr << "usage: pkgvet-completions bash|fish|zsh\n";
        return 2;
    }
    return std::cout.flush() ? 0 : 1;
}
