// What is wrong with a file that the user gave.
#pragma once

#include <string>
#include <vector>

namespace pkgvet::cli {

struct Fault {
    std::string file;
    std::string key;  // such as "profiles[2].name"; empty when the fault is the file's own
    std::string cause;
};

// The fault as one line without its line feed, fit for a terminal: FILE: "KEY" CAUSE.
std::string describe(const Fault& fault);

// faults in their order without those that have occurred before.
std::vector<Fault> eachOnce(const std::vector<Fault>& faults);

}  // namespace pkgvet::cli
