// What is in force in a run of `pkgvet check`, and where each of it comes from.
#pragma once

#include <string>
#include <vector>

#include "cli/base/fault.h"
#include "cli/base/option.h"
#include "cli/command/check.h"

namespace pkgvet::cli {

struct Setting {
    std::string name;   // as the project file calls it
    std::string value;  // of several, one after the other
    std::string origin;
};

struct Settings {
    CheckOptions options;
    std::string projectFile;  // empty for none, or for one that is not used
    std::string remark;       // why a project file is not used; empty for none
    std::vector<Setting> all;
};

std::vector<Option> settingsOptions(SettingsOptions* options);

// The options as given on the command line, with what the project file of the working directory
// says in place of those that are not given there, and the program's own choice in place of what is
// still open. Everything that is wrong with the project file goes to faults.
Settings settingsFor(const CheckOptions& given, std::vector<Fault>* faults);

// A line for each setting that a project file can make, for each other option of the command line,
// and for each other default: "NAME: VALUE (ORIGIN)".
void writeSettings(const Settings& settings, std::ostream& stream);

}  // namespace pkgvet::cli
