// The judgement of one package.
#pragma once

#include <string>
#include <vector>

#include "cli/model.h"
#include "cli/rpm_session.h"

class Configuration;

namespace pkgvet::cli {

// Judges the package at path, a path on disk, under each of the configurations, and unpacks it once
// for all of them. Never throws: whatever goes wrong is the cause in the result. While it runs,
// std::cerr and file descriptor 2 are led away.
PackageReport judge(const std::string& path, const std::vector<Configuration>& configurations,
                    RpmSession* rpm);

}  // namespace pkgvet::cli
