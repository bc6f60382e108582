// What to say of a command line that makes no sense.
#pragma once

#include <string>
#include <vector>

#include "cli/command/command_table.h"

namespace pkgvet::cli {

// The line for somebody who typed words, those behind the program's name, of which the parser says
// cause. A command or an option that table does not have is named, with the one that is most like
// it. What is typed comes back fit for a terminal.
std::string commandLineError(const CommandRow& table, const std::vector<std::string>& words,
                             const std::string& cause);

}  // namespace pkgvet::cli
