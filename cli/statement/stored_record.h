// Records as they come back to the program.
#pragma once

#include <string>
#include <vector>

#include "cli/base/fault.h"
#include "cli/statement/record.h"

namespace pkgvet::cli {

// The record in the file at path, which a stranger may have written: one that is large or of any
// other form than formatRecord() gives is at fault. The result is of use only when nothing was.
Record readRecord(const std::string& path, std::vector<Fault>* faults);

// The profile that the record is about; empty where it does not say.
std::string profileIn(const Record& record);

// In what the record that is told differs from the one that was found by judging again, each
// with both sides, fit for a terminal. Empty where it holds.
std::vector<std::string> differencesBetween(const Record& told, const Record& found);

}  // namespace pkgvet::cli
