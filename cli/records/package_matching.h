// Which package of one run is which of another.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "cli/model/model.h"

namespace pkgvet::cli {

// What a package is known by.
struct PackageIdentity {
    std::string path;
    std::string name;  // empty for what could not be read
    std::string arch;
    std::string release;  // version and release
};

PackageIdentity identityOf(const PackageReport& package);

// For each package of after the index of the same one in before, of which each is taken once at
// the most. The same path is the best sign, unless another package lies there now; then come the
// same name, architecture, version and release, which is the same package in another place, and at
// last name and architecture alone, which is another version of it.
std::vector<std::optional<std::size_t>> matched(const std::vector<PackageIdentity>& before,
                                                const std::vector<PackageIdentity>& after);

}  // namespace pkgvet::cli
