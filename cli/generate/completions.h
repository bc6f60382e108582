// Scripts by which shells complete the command line.
#pragma once

#include <iosfwd>

#include "cli/generate/command_table.h"

namespace pkgvet::cli {

void writeBashCompletion(const CommandRow& table, std::ostream& stream);
void writeFishCompletion(const CommandRow& table, std::ostream& stream);
void writeZshCompletion(const CommandRow& table, std::ostream& stream);

}  // namespace pkgvet::cli
