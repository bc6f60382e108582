// The program pkgvet run as a user runs it.
#pragma once

#include <string>
#include <vector>

struct ProgramResult {
    int status;
    std::string output;
    std::string errors;  // but for the line that follows
    // What the program says of a machine that refuses namespaces, whatever it is asked to do.
    std::string sandboxRemark;
};

// Where the built program lies.
std::string programPath();

// The variable that sets options of the address sanitizer, these beside those of the test itself.
// It means nothing where there is none.
std::string sanitizerOptions(const std::string& options);

// Takes the line about the sandbox out of what the program wrote to standard error; empty without.
std::string takeSandboxRemark(std::string* errors);

// What came of the program: its status as waitpid(2) gives it, and what it wrote.
ProgramResult programResult(int status, std::string output, std::string errors);

// Runs the built program with arguments, standard input empty and standard output no terminal.
// environment holds lines such as "NO_COLOR=1" beside those of the test itself.
ProgramResult runPkgvet(const std::vector<std::string>& arguments,
                        const std::vector<std::string>& environment = {});
