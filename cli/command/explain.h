// `pkgvet explain`: the catalogue for somebody who has a finding and wants to put it right.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "cli/base/terminal.h"
#include "cli/catalogue/catalogue.h"
#include "cli/command/command_table.h"
#include "cli/report/formats.h"

namespace pkgvet::cli {

struct ExplainOptions {
    std::vector<std::string> ids;  // none: every rule
    ColorMode color = ColorMode::Auto;
    Format format = Format::Text;  // or Json
};

// Names all ids that are wrong on standard error, so that the user corrects them at once. True when
// none is.
bool areKnownIds(const std::vector<std::string>& ids);

CommandRow explainCommand(ExplainOptions* options);

// Writes the entries that options name, or all, to standard output and returns the exit status.
// With an unknown id nothing is written there, and standard error names the nearest ones.
int explain(const ExplainOptions& options);

// Writes an entry for a terminal, in lines of at most 80 columns but for those of its example.
void writeEntry(const Entry& entry, bool color, std::ostream& stream);

}  // namespace pkgvet::cli
