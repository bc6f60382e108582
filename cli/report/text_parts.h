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

// The findings of a package under the headings of the catalogue, with those that nothing excuses
// ahead of them under a heading of their own. Nothing for a package without any.
void writeTextFindings(const PackageReport& package, const ReportStyle& style,
                       std::ostream& stream);

// "PATH: rejected: 2 errors, 1 warning"; with several profiles a line for those that have the same
// verdict for the same reasons.
void writeTextVerdict(const PackageReport& package, const ReportStyle& style, std::ostream& stream);

// The rules that are broken most often, and the one to read about first.
void writeTextAdvice(const PackageReport& package, const ReportStyle& style, std::ostream& stream);

// A table with a column for each profile: how many findings count under it, "." for none. It has
// a row for each rule that is not broken as often under all of them, and a line says how many are.
// Nothing for a package that breaks no rule.
void writeProfileMatrix(const PackageReport& package, const ReportStyle& style,
                        std::ostream& stream);

}  // namespace pkgvet::cli
