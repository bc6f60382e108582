// The packages that a run is about.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cli/command/options.h"

namespace pkgvet::cli {

struct Input {
    std::string path;
    std::string cause;  // why there is nothing to judge; empty when there may be
};

// The packages that the options name, each as its path was given: the paths in their order, then
// those of the lists. A directory stands for every *.rpm below it, in the order of their names,
// with links followed; one that several links lead to is walked through once. What cannot be looked
// at is among the packages, with the cause. Throws std::runtime_error when a list cannot be read.
std::vector<Input> collectInput(const CheckOptions& options);

}  // namespace pkgvet::cli
