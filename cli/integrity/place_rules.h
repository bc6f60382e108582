// The rule on paths that hold a permitted place without beginning with it.
#pragma once

#include <string>
#include <vector>

#include "cli/integrity/header_files.h"
#include "cli/integrity/integrity_findings.h"

namespace pkgvet::cli {

// What decides on the places of a package, of which a part depends on the profile.
struct PlaceRules {
    std::string packageName;
    std::string libexecDirectory;
    std::vector<std::string> listedPaths;  // patterns of the rule tree
};

// The library permits a path wherever a permitted place stands in it, as in
// "/etc/cron.d/usr/share/icons/hicolor/evil". This rule says so where the place is not at the
// beginning, unless the rule tree lists the path.
void checkPlaces(const HeaderFiles& list, const PlaceRules& rules, IntegrityFindings* findings);

}  // namespace pkgvet::cli
