// Records in a directory.
#pragma once

#include <string>

#include "cli/model/model.h"

namespace pkgvet::cli {

// Makes the directory where it is missing. Throws std::runtime_error with a line that names it when
// no file can be written there.
void makeRecordDirectory(const std::string& directory);

// Writes a file for each package and profile of the run, named as forEachRecord() says, with the
// bytes of a line of the format. A record that is there is replaced; any other file is not, and
// ends the writing as a directory does that cannot be written to.
void writeRecords(const RunReport& run, const std::string& directory);

}  // namespace pkgvet::cli
