// What the program says of packages, read from its report.
#pragma once

#include <string>
#include <vector>

#include "tests/support/rules/rule_tree.h"

struct JudgedPackage {
    std::string path;
    std::string cause;  // why it was not judged
    bool complete = false;
    bool accepted = false;  // by the library
    bool intact = false;
    bool passes = false;
    std::vector<std::string> findings;  // their ids, in alphabetical order and each once
    std::string messages;               // a line for each finding
};

// Judges the packages, or all of a directory, under the profile "regular" with validation enabled.
// The program may have further options, and an environment as in runPkgvet().
std::vector<JudgedPackage> judgePackages(const RuleTree& tree,
                                         const std::vector<std::string>& paths,
                                         const std::vector<std::string>& options = {},
                                         const std::vector<std::string>& environment = {});
