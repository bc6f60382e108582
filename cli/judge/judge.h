// The judgement of one package.
#pragma once

#include <string>
#include <vector>

#include "cli/judge/rpm_session.h"
#include "cli/model/model.h"

class Configuration;

namespace pkgvet::cli {

// Judges the package at path, a path on disk, under each of the configurations, of which there is
// at least one, and unpacks it once for all of them. Never throws: whatever goes wrong is the cause
// in the result. While it runs, std::cerr is led away; what tools and C libraries say on file
// descriptor 2 is not.
PackageReport judge(const std::string& path, const std::vector<Configuration>& configurations,
                    RpmSession* rpm);

}  // namespace pkgvet::cli
