// Addresses of packages on the page.
#pragma once

#include <set>
#include <string>

#include "cli/model/model.h"

namespace pkgvet::cli {

// Gives each package of a run a key that other runs give it as well: its SHA-256, or a hash of its
// path where it has none or the run holds it twice.
class PackageKeys {
public:
    std::string of(const PackageReport& package);

private:
    std::set<std::string> taken_;
};

}  // namespace pkgvet::cli
