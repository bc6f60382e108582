// Scripts by which shells complete the command line, made from a table of all commands.
#pragma once

#include <iosfwd>

#include "cli/command/command_table.h"

namespace pkgvet::cli {

void writeBashCompletion(const CommandRow& table, std::ostream& stream);
void writeFishCompletion(const CommandRow& table, std::ostream& stream);
void writeZshCompletion(const CommandRow& table, std::ostream& stream);

}  // namespace pkgvet::cli
