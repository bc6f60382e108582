// What a run comes to: packages by verdict, and each finding told once.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "cli/model/model.h"

namespace pkgvet::cli {

PackageTally tallyOf(const RunReport& run);

// A finding with the profiles under which it was found.
struct MergedFinding {
    const Finding* finding;
    std::vector<std::string_view> profiles;
};

// The findings of a package under all its profiles, each told once, in the order in which they were
// found. They point into package. What one profile finds several times stays as many findings.
std::vector<MergedFinding> mergedFindings(const PackageReport& package);

}  // namespace pkgvet::cli
