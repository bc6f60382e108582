// The findings of a package as the page lists them.
#pragma once

#include <cstddef>
#include <vector>

#include "cli/model/model.h"
#include "cli/page/finding_kinds.h"

namespace pkgvet::cli {

// Findings of one kind, in the order in which they were found.
struct FindingGroup {
    std::size_t kind;  // its number
    std::vector<const Finding*> findings;
};

// All findings of the package, each told once whatever the number of profiles, the most severe
// first. The part of the page that needs no scripts and the data for the scripts must have them in
// the same order: the data leaves out the subjects, which the scripts find there.
std::vector<FindingGroup> groupsOf(const PackageReport& package, FindingKinds* kinds);

}  // namespace pkgvet::cli
