// What a judge tells the program.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/model/model.h"

namespace pkgvet::cli {

// A judge looks at a package that may have got the better of it, so nothing it says is believed
// unchecked: whatever is not exactly what a sound judge of this version writes is no report.

// A report with what the judge found out. The path, the names of the profiles and what counts are
// not in it: the receiver knows them better. One that takes more than mostBytes becomes one of a
// package that could not be judged.
std::string reportMessage(const PackageReport& report, std::size_t mostBytes);

// Reads it back. Each judgement gets the name of the profile at its place; a report with another
// number of judgements is none.
std::optional<PackageReport> decodeReport(std::string_view bytes,
                                          const std::vector<std::string>& profiles);

}  // namespace pkgvet::cli
