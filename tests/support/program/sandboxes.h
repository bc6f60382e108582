// The ways in which a machine may shut judges off, for tests that run in each of them.
#pragma once

#include <ostream>
#include <string>
#include <vector>

struct SandboxCase {
    const char* name;
    std::vector<std::string> options;  // of the program
    // In front of the program, as runPkgvet() takes it.
    std::vector<std::string> environment;
    std::string reported;  // what reports call the sandbox; empty where the machine decides
    bool shutsOff = true;
};

// A superuser of a user namespace in which no other can be made: what remains is Landlock.
std::vector<std::string> withoutNamespaces();

// Whatever the machine has; all there is, or nothing is judged; Landlock alone; none.
SandboxCase chosenSandbox();
SandboxCase requiredSandbox();
SandboxCase landlockAlone();
SandboxCase noSandbox();

// Whether this machine has it. Tests are skipped where it does not.
bool isThere(const SandboxCase& sandbox);

// How gtest prints one.
void PrintTo(const SandboxCase& sandbox, std::ostream* stream);
