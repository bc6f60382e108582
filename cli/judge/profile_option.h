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

// All that profilesNamed() knows.
std::vector<std::string> profileWords();

// Adds each of more that is not there yet.
void addProfiles(const std::vector<Profiles>& more, std::vector<Profiles>* profiles);

// The option --profile, which names one profile. It takes the place of what profiles held.
Option profileOption(std::vector<Profiles>* profiles, const std::string& description);

// The form of it that permits "all" too, and may be repeated: what it names is added to profiles.
Option profilesOption(std::vector<Profiles>* profiles, const std::string& description);

}  // namespace pkgvet::cli
