// The validation profiles as the command line names them.
#pragma once

#include <string>
#include <vector>

#include "cli/base/option.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

// Every profile, in the order in which help lists them.
std::vector<Profiles> allProfiles();

// The profile of that name, or all of them for "all". Empty when there is none.
std::vector<Profiles> profilesNamed(const std::string& name);

// The option --profile, which names one profile, and the form of it that permits "all" too. What it
// names takes the place of what profiles held.
Option profileOption(std::vector<Profiles>* profiles, const std::string& description);
Option profilesOption(std::vector<Profiles>* profiles, const std::string& description);

}  // namespace pkgvet::cli
