// The files that a run of `pkgvet check` reads and writes.
#pragma once

#include <string>
#include <vector>

#include "cli/command/settings.h"
#include "cli/model/model.h"

namespace pkgvet::cli {

// Throws std::runtime_error, which names the file, when a report or a baseline would take the place
// of something else, see output_guard.h. rules is the configuration file of the rule tree.
void guardFiles(const Settings& settings, const std::string& rules,
                const std::vector<Input>& packages);

}  // namespace pkgvet::cli
