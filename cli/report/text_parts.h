// The parts of the report that is text for a person.
#pragma once

#include <array>
#include <ostream>
#include <string_view>

#include "cli/base/terminal.h"
#include "cli/model/model.h"
#include "cli/report/formats.h"

namespace pkgvet::cli {

// Indexed by Severity.
inline constexpr std::array<std::string_view, 4> kSeverityColors = {kBold, kYellow, kRed, kBoldRed};

constexpr std::string_view severityColor(Severity severity) {
    return kSeverityColors[static_cast<std::size_t>(severity)];
}

// "PATH: rejected (2 errors, 1 warning)"; with several profiles a line for those that accept the
// package and one for those that reject it.
void writeTextVerdict(const PackageReport& package, const ReportStyle& style, std::ostream& stream);

// Writes a table with a row for each rule that the package breaks and a column for each profile:
// how many findings count under it, "." for none. Nothing for a package that breaks no rule.
void writeProfileMatrix(const PackageReport& package, bool color, std::ostream& stream);

}  // namespace pkgvet::cli
