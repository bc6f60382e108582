// What is wrong with a file that the user gave.
#pragma once

#include <string>
#include <vector>

#include "cli/base/json_positions.h"

namespace pkgvet::cli {

struct Fault {
    std::string file;
    std::string key;  // such as "profiles[2].name"; empty when the fault is the file's own
    std::string cause;
    Position position = {};
    std::string value = {};  // the value in question, as it is written; empty for none
};

// What most often is wrong with a value in a JSON file, in the words that all readers of one use.
inline constexpr const char* kMissing = "is missing";
inline constexpr const char* kNotAnObject = "is not an object";
inline constexpr const char* kNotAnArray = "is not an array";
inline constexpr const char* kNotAString = "is not a string";
inline constexpr const char* kNotARegularExpression = "is not a regular expression: ";  // and why

// The fault as one line without its line feed, fit for a terminal: FILE:LINE:COLUMN: VALUE CAUSE,
// without what is not known, and with "KEY" in place of a value.
std::string describe(const Fault& fault);

// faults in their order without those that have occurred before.
std::vector<Fault> eachOnce(const std::vector<Fault>& faults);

}  // namespace pkgvet::cli
