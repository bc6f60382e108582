// The program pkgvet run as a user runs it.
#pragma once

#include <string>
#include <vector>

struct ProgramResult {
    int status;
    std::string output;
    std::string errors;
};

// Where the built program lies.
std::string programPath();

// The variable that sets options of the address sanitizer, these beside those of the test itself.
// It means nothing where there is none.
std::string sanitizerOptions(const std::string& options);

// Runs the built program with arguments, standard input empty and standard output no terminal.
// environment holds lines such as "NO_COLOR=1" beside those of the test itself.
ProgramResult runPkgvet(const std::vector<std::string>& arguments,
                        const std::vector<std::string>& environment = {});
