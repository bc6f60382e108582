// The files that a run over packages reads and writes.
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

// The same for a command that writes other files than `pkgvet check` and reads several rule trees,
// which trees names.
void guardFiles(const std::vector<std::string>& written, const Settings& settings,
                const std::vector<std::string>& trees, const std::vector<Input>& packages);

}  // namespace pkgvet::cli
