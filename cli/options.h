// The command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

enum class ColorMode { Auto, Always, Never };
enum class ValidationMode { Auto, On, Off };

struct CheckOptions {
    std::string rules;  // empty: the tree that comes with the program
    Profiles profile = Profiles::Regular;
    ValidationMode validation = ValidationMode::Auto;
    ColorMode color = ColorMode::Auto;
    bool quiet = false;
    std::vector<std::string> packages;
};

// What the command line asks for. Empty when there is nothing left to do, since help was shown or
// the line was wrong; exitStatus then says with what status to end.
std::optional<CheckOptions> parseCommandLine(int argc, char** argv, int* exitStatus);

}  // namespace pkgvet::cli
